// Feeds an entry point with the files of a corpus and ever stranger descendants of them, from a
// fixed seed. TAMSEL_FUZZ_RUNS is how often (20,000 in the ordinary run of the tests).

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> corpus() {
    std::vector<std::filesystem::path> paths;
    for (const auto& file : std::filesystem::directory_iterator(TAMSEL_CORPUS))
        paths.push_back(file.path());
    std::sort(paths.begin(), paths.end());
    std::vector<Bytes> seeds;
    for (const auto& path : paths) {
        std::ifstream in(path, std::ios::binary);
        seeds.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return seeds;
}

class Mutator {
public:
    explicit Mutator(const std::vector<Bytes>& seeds) : m_seeds(seeds) {}

    /// One small change; a piece of another file of the corpus sometimes.
    void change(Bytes& bytes) {
        const std::size_t at = below(bytes.size());
        const std::size_t length = 1 + below(std::min<std::size_t>(64, bytes.size() - at));
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const auto end = place + static_cast<std::ptrdiff_t>(std::min(length, bytes.size() - at));
        switch (m_random() % 6) {
        case 0:
            if (!bytes.empty())
                bytes[at] = static_cast<std::uint8_t>(m_random());
            break;
        case 1:
            if (!bytes.empty())
                bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ (1U << (m_random() % 8)));
            break;
        case 2:
            bytes.erase(place, end);
            break;
        case 3:
            repeat(bytes, at, length);
            break;
        case 4:
            std::fill(place, end, std::uint8_t(m_random() % 2 == 0 ? 0 : m_random()));
            break;
        default: {
            const Bytes& other = m_seeds[below(m_seeds.size())];
            const std::size_t from = below(other.size());
            const std::size_t count = std::min<std::size_t>(length, other.size() - from);
            bytes.insert(place, other.begin() + static_cast<std::ptrdiff_t>(from),
                         other.begin() + static_cast<std::ptrdiff_t>(from + count));
        }
        }
    }
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : m_random() % limit; }

private:
    static void repeat(Bytes& bytes, std::size_t at, std::size_t length) {
        const Bytes piece(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                          bytes.begin() +
                              static_cast<std::ptrdiff_t>(std::min(at + length, bytes.size())));
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), piece.begin(), piece.end());
    }

    const std::vector<Bytes>& m_seeds;
    std::mt19937 m_random{20240607};
};

TEST(TAMSEL_FUZZER, TheCorpusAndItsDescendants) {
    const std::vector<Bytes> seeds = corpus();
    ASSERT_FALSE(seeds.empty());
    for (const Bytes& seed : seeds)
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
    const char* runs = std::getenv("TAMSEL_FUZZ_RUNS");
    Mutator mutator(seeds);
    for (long i = runs ? std::atol(runs) : 20'000; i > 0; --i) {
        Bytes bytes = seeds[static_cast<std::size_t>(i) % seeds.size()];
        for (std::size_t changes = 1 + mutator.below(4); changes > 0; --changes)
            mutator.change(bytes);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
}

} // namespace
