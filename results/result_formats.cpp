#include "results/result_formats.h"

#include <algorithm>

namespace kelmo {

const std::vector<sResultFormat>& resultFormats() {
    static const std::vector<sResultFormat> formats{
        {".sqlite", true, openSqliteResults},       {".tsv", false, openTsvResults},
        {".tsv.gz", false, openTsvResults},         {".jsonl", false, openJsonLinesResults},
        {".jsonl.gz", false, openJsonLinesResults},
    };
    return formats;
}

const sResultFormat* findResultFormat(std::string_view path) {
    const auto found = std::ranges::find_if(resultFormats(), [&](const sResultFormat& format) {
        return path.ends_with(format.suffix) && path.size() > format.suffix.size();
    });
    return found == resultFormats().end() ? nullptr : &*found;
}

std::string resultSuffixes() {
    std::string text;
    const auto& formats = resultFormats();
    for (std::size_t i = 0; i < formats.size(); ++i) {
        text += i == 0 ? "" : i + 1 == formats.size() ? " or " : ", ";
        text += formats[i].suffix;
    }
    return text;
}

} // namespace kelmo
