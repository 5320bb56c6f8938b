#pragma once
/// @file Random.h
/// The demo plant's source of chance: std::mt19937_64, whose output the standard fixes
/// bit for bit, with its own small distributions on top. The standard library's
/// distributions are left alone on purpose: their results differ from one library to
/// another, and a seed must give the same plant everywhere.

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace demo {

class Random
{
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) { }

    std::uint64_t next() { return m_engine(); }

    /// A whole number from lo to hi, both included, without modulo bias.
    int between(int lo, int hi)
    {
        if (hi <= lo)
            return lo;
        const std::uint64_t span = std::uint64_t(std::int64_t(hi) - lo) + 1;
        const std::uint64_t limit = UINT64_MAX - UINT64_MAX % span;
        std::uint64_t x;
        do
            x = next();
        while (x >= limit);
        return int(std::int64_t(lo) + std::int64_t(x % span));
    }

    /// A number in [0, 1) from the top 53 bits.
    double unit() { return double(next() >> 11) * (1.0 / 9007199254740992.0); }

    /// True with probability p.
    bool chance(double p) { return unit() < p; }

    template <typename T> const T& pick(const std::vector<T>& items)
    {
        return items[size_t(between(0, int(items.size()) - 1))];
    }

    /// An index chosen with the given weights (all >= 0, not all 0).
    int weighted(const std::vector<int>& weights)
    {
        int total = 0;
        for (int w : weights)
            total += w;
        int x = between(0, total - 1);
        for (size_t i = 0; i < weights.size(); ++i) {
            if (x < weights[i])
                return int(i);
            x -= weights[i];
        }
        return int(weights.size()) - 1;
    }

    /// n distinct numbers from lo to hi, in rising order (Floyd's sampling).
    std::vector<int> sample(int lo, int hi, int n)
    {
        std::vector<int> chosen;
        const int span = hi - lo + 1;
        if (n > span)
            n = span;
        for (int j = span - n; j < span; ++j) {
            const int t = between(0, j);
            bool seen = false;
            for (int c : chosen)
                seen = seen || c == lo + t;
            chosen.push_back(seen ? lo + j : lo + t);
        }
        std::sort(chosen.begin(), chosen.end());
        return chosen;
    }

    /// Fisher-Yates, driven by this generator.
    template <typename T> void shuffle(std::vector<T>& items)
    {
        for (int i = int(items.size()) - 1; i > 0; --i)
            std::swap(items[size_t(i)], items[size_t(between(0, i))]);
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace demo
