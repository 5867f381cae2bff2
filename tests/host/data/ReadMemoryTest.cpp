#include "tests/host/data/DataTestSupport.h"
#include "tests/support/FailingNew.h"

#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <string>

namespace korvana::test {
namespace {

struct Outcome {
    std::string read; ///< empty: memory ran out
    bool refused;     ///< an allocation was; without memory for another thread the others do its work
};

/// Reads a text with the n-th allocation refused, whichever thread asks for it.
Outcome readWithout(long n, std::string_view text, const ReaderTuning& tuning) {
    TextSource source(text);
    std::optional<DataSet> data;
    ozm::test::failingNewOfAll = n;
    try {
        data.emplace(readDelimited(source, {}, tuning));
    } catch (const std::bad_alloc&) {
        data.reset();
    }
    const bool refused = ozm::test::failingNewOfAll.exchange(0) <= 0;
    return {data ? dump(*data) : "", refused};
}

/// Numbers, numbers in quotation marks, texts that repeat, that do not, and that are not UTF-8.
std::string rowsOfAllSorts(int count) {
    std::string text = "n,q,a,b,c\n";
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        text += number + ".25,\"" + number + "\",\"a \"\"" + std::to_string(i % 7) + "\",the long text " +
                number + ",\xE9" + std::to_string(i % 5) + "\n";
    }
    return text;
}

TEST(ReadMemory, AnyAllocationMayBeRefused) {
    const std::string few = rowsOfAllSorts(60);
    const std::string many = rowsOfAllSorts(40'000); // whose texts several threads sort
    struct Way {
        const std::string& text;
        ReaderTuning tuning;
        long step;
    };
    for (const Way& way : {Way{few, {1, 500}, 1}, Way{few, {3, 100}, 1}, Way{many, {3, 20'000}, 7001}}) {
        const std::string expected = dump(readTuned(way.text, way.tuning));
        int refusals = 0;
        for (long n = 1;; n += way.step) {
            const Outcome outcome = readWithout(n, way.text, way.tuning);
            if (!outcome.refused || !outcome.read.empty()) {
                ASSERT_EQ(outcome.read, expected) << n;
            }
            if (!outcome.refused) break;
            ++refusals;
        }
        EXPECT_GT(refusals, way.step > 1 ? 4 : 100);
    }
}

} // namespace
} // namespace korvana::test
