#include "input/assemblies.h"

#include "base/string_operation.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <utility>

namespace kelmo {

namespace {

using tOperations = std::map<std::string, sPlacement>;
using tPlacements = std::vector<sPlacement>;

std::optional<unsigned> numberIn(std::string_view text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number)
                                                                    : std::nullopt;
}

/// Adds the operation of one id, or those of a range of numbers.
bool addItem(std::string_view item, const tOperations& operations, tPlacements& placements) {
    item = trimmedView(item);
    if (const auto operation = operations.find(std::string(item)); operation != operations.end()) {
        placements.push_back(operation->second);
        return true;
    }
    const std::size_t dash = item.find('-');
    const auto first = numberIn(item.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : numberIn(item.substr(dash + 1));
    if (!first || !last || *last < *first) {
        return false;
    }
    for (unsigned id = *first;; ++id) {
        const auto operation = operations.find(std::to_string(id));
        if (operation == operations.end()) {
            return false;
        }
        placements.push_back(operation->second);
        if (id == *last) {
            return true;
        }
    }
}

/// What stands within one pair of parentheses, or without any.
std::optional<tPlacements> factor(std::string_view list, const tOperations& operations) {
    tPlacements placements;
    while (true) {
        const std::size_t comma = std::min(list.find(','), list.size());
        if (!addItem(list.substr(0, comma), operations, placements) ||
            placements.size() > mostPlacements) {
            return std::nullopt;
        }
        if (comma == list.size()) {
            return placements;
        }
        list.remove_prefix(comma + 1);
    }
}

/// Takes the next factor off the expression.
std::string_view nextFactor(std::string_view& expression) {
    std::string_view list = std::exchange(expression, {});
    if (list.starts_with('(')) {
        const std::size_t end = list.find(')');
        if (end != std::string_view::npos) {
            expression = trimmedView(list.substr(end + 1));
            return list.substr(1, end - 1);
        }
    }
    return list;
}

} // namespace

sPlacement combined(const sPlacement& second, const sPlacement& first) {
    sPlacement both;
    for (std::size_t row = 0; row < 3; ++row) {
        const double* const factors = &second.rotation[3 * row];
        for (std::size_t column = 0; column < 3; ++column) {
            both.rotation[3 * row + column] = factors[0] * first.rotation[column] +
                                              factors[1] * first.rotation[3 + column] +
                                              factors[2] * first.rotation[6 + column];
        }
        both.shift[row] = factors[0] * first.shift[0] + factors[1] * first.shift[1] +
                          factors[2] * first.shift[2] + second.shift[row];
    }
    return both;
}

std::optional<tPlacements> placementsOf(std::string_view expression,
                                        const tOperations& operations) {
    tPlacements product;
    expression = trimmedView(expression);
    bool isFirst = true;
    do {
        const auto factors = factor(nextFactor(expression), operations);
        if (!factors || (!isFirst && product.size() * factors->size() > mostPlacements)) {
            return std::nullopt;
        }
        if (std::exchange(isFirst, false)) {
            product = *factors;
            continue;
        }
        tPlacements longer;
        for (const sPlacement& second : product) {
            for (const sPlacement& first : *factors) {
                longer.push_back(combined(second, first));
            }
        }
        product = std::move(longer);
    } while (!expression.empty());
    return product;
}

std::set<std::string> idsIn(std::string_view list) {
    constexpr std::string_view separators = ", \t\r\n";
    std::set<std::string> ids;
    while (true) {
        list.remove_prefix(std::min(list.find_first_not_of(separators), list.size()));
        if (list.empty()) {
            return ids;
        }
        const std::size_t length = std::min(list.find_first_of(separators), list.size());
        ids.emplace(list.substr(0, length));
        list.remove_prefix(length);
    }
}

} // namespace kelmo
