/* Distances between words. */
#include "cli/support/suggestion.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace mtranslate {

namespace {

bool is_same_letter(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
}

std::size_t difference(std::size_t a, std::size_t b) { return a > b ? a - b : b - a; }

/* How many letters have to be put in, taken out or changed to make b of a. */
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = diagonal + (is_same_letter(a[i - 1], b[j - 1]) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string suggestion(std::string_view word, const std::vector<std::string> &known) {
    std::string nearest;
    std::size_t least = word.size() / 3 + 1;  // a third of the letters may be wrong
    for (const std::string &candidate : known) {
        if (difference(word.size(), candidate.size()) > least) continue;
        const std::size_t wrong = distance(word, candidate);
        if (wrong > least || (wrong == least && !nearest.empty())) continue;
        least = wrong;
        nearest = candidate;
    }
    return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

}  // namespace mtranslate
