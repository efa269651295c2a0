// Makes bad files out of good ones: bytes, lines, columns and numbers go wrong as they do in life.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace kelmo {

/// The same seed makes the same mutations with every standard library.
class cTextMutator {
  public:
    explicit cTextMutator(unsigned seed) : generator(seed) {}

    /// The text after one to four mutations; lines may come in from `other`.
    std::string mutated(std::string text, const std::string& other);
    /// One of the texts, of which there is at least one.
    const std::string& oneOf(const std::vector<std::string>& texts) {
        return texts[below(texts.size())];
    }

  private:
    std::size_t below(std::size_t end) { return generator() % end; }
    void mutateBytes(std::string& text);
    void mutateNumber(std::string& text);
    void mutateLines(std::string& text, const std::string& other);
    void mutateLine(std::string& line);

    std::mt19937 generator;
};

} // namespace kelmo
