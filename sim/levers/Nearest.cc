#include "sim/levers/Nearest.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace sim {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), lower);
    return out;
}

/// How many letters have to be changed, added, left out or swapped with the next to make one word of the other.
size_t distance(const std::string &left, const std::string &right) {
    std::vector<size_t> before;
    std::vector<size_t> last(right.size() + 1);
    for (size_t i = 0; i <= right.size(); ++i)
        last[i] = i;
    for (size_t row = 1; row <= left.size(); ++row) {
        std::vector<size_t> now(right.size() + 1, row);
        for (size_t i = 1; i <= right.size(); ++i) {
            const size_t change = left[row - 1] == right[i - 1] ? 0 : 1;
            now[i] = std::min({last[i] + 1, now[i - 1] + 1, last[i - 1] + change});
            if (row > 1 && i > 1 && left[row - 1] == right[i - 2] && left[row - 2] == right[i - 1])
                now[i] = std::min(now[i], before[i - 2] + 1);
        }
        before = last;
        last = now;
    }
    return last.back();
}

/// The distance, then how much is left of a word where it is no longer like the other.
using Farness = std::pair<size_t, size_t>;

constexpr Farness kFar = {std::numeric_limits<size_t>::max(), 0};

/// Longer words may differ more.
Farness farness(const std::string &typed, const std::string &candidate) {
    const size_t length = std::max(typed.size(), candidate.size());
    const auto unlike = std::mismatch(typed.begin(), typed.end(), candidate.begin(), candidate.end()).first;
    const auto alike = static_cast<size_t>(unlike - typed.begin());
    if (typed.size() >= 2 && alike == typed.size())
        return {1, length - alike}; // a beginning is as good as one letter
    if (length - std::min(typed.size(), candidate.size()) > 3)
        return kFar; // and nobody waits for the comparison with a very long word
    const size_t found = distance(typed, candidate);
    return found <= 1 + length / 4 && found < candidate.size() ? Farness(found, typed.size() - alike) : kFar;
}

} // namespace

bool isSameWord(std::string_view left, std::string_view right) {
    return lowered(left) == lowered(right);
}

std::string nearest(std::string_view typed, const std::vector<std::string> &candidates) {
    std::string best;
    Farness least = kFar;
    const std::string wanted = lowered(typed);
    for (const std::string &candidate : candidates) {
        const Farness found = farness(wanted, lowered(candidate));
        if (found < least) {
            least = found;
            best = candidate;
        }
    }
    return best;
}

std::string didYouMean(std::string_view typed, const std::vector<std::string> &candidates) {
    const std::string near = nearest(typed, candidates);
    return near.empty() ? std::string() : "; did you mean '" + near + "'?";
}

} // namespace sim
