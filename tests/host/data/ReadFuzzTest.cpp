#include "tests/host/data/DataTestSupport.h"

#include "host/data/CaseSelection.h"
#include "host/data/DataError.h"
#include "host/data/Describe.h"
#include "host/data/Expression.h"
#include "host/data/TextEncoding.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

namespace korvana::test {
namespace {

std::string randomText(std::mt19937& random, std::string_view alphabet, std::size_t most) {
    std::string text(random() % (most + 1), ' ');
    for (char& c : text)
        c = alphabet.empty() ? static_cast<char>(random()) : alphabet[random() % alphabet.size()];
    return text;
}

std::string mutated(std::string text, std::mt19937& random, std::string_view alphabet) {
    for (auto n = 1 + random() % 4; n > 0 && !text.empty(); --n) {
        const std::size_t at = random() % text.size();
        const char c = random() % 2 == 0 ? alphabet[random() % alphabet.size()] : static_cast<char>(random());
        switch (random() % 4) {
        case 0:
            text[at] = c;
            break;
        case 1:
            text.insert(at, 1, c);
            break;
        case 2:
            text.erase(at, 1 + random() % 5);
            break;
        default:
            text.insert(at, text.substr(random() % text.size(), random() % 12));
        }
    }
    return text;
}

/** What reading comes to: the data with the notes, or the message. */
std::string outcome(const std::string& text, const ReaderTuning& tuning) {
    std::string result;
    try {
        const DataSet data = readTuned(text, tuning);
        for (int v = 0; v < data.variableCount(); ++v) {
            const VariableSummary summary = describeVariable(data, v);
            EXPECT_EQ(summary.validCount + summary.missingCount, data.caseCount());
            EXPECT_TRUE(isUtf8(data.variable(v).name));
        }
        result = dump(data);
        for (const std::string& note : data.notes())
            result += "\n" + note;
    } catch (const DataError& error) {
        result = error.what();
    }
    EXPECT_TRUE(isUtf8(result));
    return result;
}

TEST(ReadFuzz, AnyBytesAreReadOrRefusedAlikeByOneThreadAndSeveral) {
    const std::string valid = "\"\",time,\"group \"\"g\"\"\",entry;x\r\nAnn,1.5,\"a\nb\",1995-01-15\r\n"
                              "Bob,-2e3,'c',1996-02-29\nCid,NA,\"d,e\",.\n\nDan,1234567890123456789.5,f,\n";
    const std::string dates = "d;e;x\n01/02/1995;30.1.95;1,5\n12/11/1994;1.2.95 12:30;1.200\n"
                              "1995-01-02T10:00Z;31-12-1999;850\n";
    const std::string_view alphabet = "\",;\t\r\n .-+e019ANa\xC3\xA9";
    std::mt19937 random(20240117);
    for (int i = 0; i < 6000; ++i) {
        const std::string text = i % 3 == 0   ? randomText(random, alphabet, 60)
                                 : i % 6 == 1 ? mutated(dates, random, "0123456789./-,; :TZ\n")
                                 : i % 3 == 1 ? mutated(valid, random, alphabet)
                                              : randomText(random, "", 40);
        if (text.empty()) continue;
        const std::string alone = outcome(text, {1, 1U << 20U});
        const std::string several = outcome(text, {2, 1 + random() % 20});
        ASSERT_EQ(alone, several) << testing::PrintToString(text);
    }
}

TEST(ReadFuzz, AnyExpressionIsEvaluatedOrRefused) {
    const DataSet data =
        readText("age,sex,white cells,entry\n50,male,3.5,1995-01-15\n,female,0,1995-01-16\n");
    const std::string valid =
        "not (age > 50.5 and sex = 'male') or `white cells` <= -2^2 + max(1, log(age)) && "
        "missing(age) || entry >= 1995-01-15";
    const std::string_view alphabet = "()<>=!&|+-*/^,'\"`. 0129eagorntd\xC3";
    std::mt19937 random(42);
    int understood = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string text =
            i % 4 == 0 ? randomText(random, alphabet, 30) : mutated(valid, random, alphabet);
        try {
            selectCases(data, text);
            ++understood;
        } catch (const ExpressionError& error) {
            EXPECT_LE(error.position(), text.size());
            EXPECT_EQ(std::string(error.what()).find("cannot be understood"), std::string::npos) << text;
        } catch (const DataError&) {
            ++understood;
        }
    }
    EXPECT_GT(understood, 100);
}

} // namespace
} // namespace korvana::test
