#include "host/data/FrameData.h"
#include "tests/host/data/DataTestSupport.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace korvana {
namespace {

using test::dump;
using test::readText;

const double nan = std::numeric_limits<double>::quiet_NaN();

template <class T>
CellBlock block(CellType type, const std::vector<T>& cells) {
    return {type, cells.data(), sizeof(T), std::make_shared<int>(0)};
}

FrameTexts texts(const std::vector<std::string>& cells) {
    FrameTexts made;
    for (const std::string& cell : cells) {
        made.places.push_back(static_cast<std::int32_t>(made.texts.size()));
        made.texts.push_back(cell);
    }
    return made;
}

DataSet frameOf(const std::vector<std::string>& cells, const ReadSettings& reading = {}) {
    FrameData frame("frame", static_cast<std::int64_t>(cells.size()), reading);
    frame.addTexts("v", texts(cells));
    return frame.finish();
}

/// Texts in memory, and in a file with a second column, must become the same.
void expectAsInFile(const std::vector<std::string>& cells, const ReadSettings& reading = {}) {
    std::string file = "v,w\n";
    for (const std::string& cell : cells)
        file += '"' + cell + "\",1\n";
    const auto outcome = [](const auto& make) {
        try {
            DataSet data = make();
            if (data.variableCount() == 2) data.removeVariable(1, "variable 'w'");
            std::string codes; // which dump() hides behind the labels
            for (const double cell : data.column(0))
                codes += std::isnan(cell) ? " -" : " " + numberText(cell);
            return dump(data) + codes + (data.notes().empty() ? "" : "\nwith a note");
        } catch (const DataError& error) {
            const std::string text = error.what();
            return "refused: " + text.substr(text.find("variable"));
        }
    };
    EXPECT_EQ(outcome([&] { return frameOf(cells, reading); }), outcome([&] {
                  return readText(file, {.header = HeaderLine::Yes,
                                         .separator = ',',
                                         .decimalMark = reading.decimalMark,
                                         .dates = reading.dates});
              }));
}

TEST(FrameData, TextsBecomeWhatAFileWithThemBecomes) {
    expectAsInFile({"b", "a", "", "b", " a ", "NA", "10", "9"});
    expectAsInFile({"1", "2.5", "", "-3e2", ".", "nan"});
    expectAsInFile({"2001-02-03", "1999-12-31", ""});
    expectAsInFile({"2001-02-03 10:30", "1999-12-31"});
    expectAsInFile({"31/12/1999", "01/02/2000"});
    expectAsInFile({"01/02/2000", "03/04/2000"}); // ambiguous
    expectAsInFile({"01/02/2000", "03/04/2000"}, {HeaderLine::Automatic, {}, {}, DateOrder::MonthDayYear});
    expectAsInFile({"1,5", "2,25"}, {HeaderLine::Automatic, {}, ',', {}});
    expectAsInFile({"1,5", "2,25"});
    expectAsInFile({"1", "2", "1.2.3"}); // a typing error among numbers
    expectAsInFile({"1", "inf"});
    expectAsInFile({"Gr\xC3\xBCn", "one\r\ntwo", "x"});
    expectAsInFile({"", "", ""});
    expectAsInFile({"True", "False", "", "TRUE", "false"});
    expectAsInFile({"FALSE", "FALSE"});
    expectAsInFile({"True", "False", "maybe"});
}

TEST(FrameData, RefusesTheSameTextsAsAFile) {
    try {
        frameOf({"1", "2", "1.2.3"});
        FAIL() << "taken";
    } catch (const DataError& error) {
        EXPECT_EQ(error.file(), "frame");
        EXPECT_EQ(error.line(), 3);
        EXPECT_EQ(error.column(), 1);
    }
    EXPECT_THROW(frameOf({"01/02/2000", "03/04/2000"}), AmbiguousDates);
}

TEST(FrameData, NumbersWithoutGapsAreBorrowedUntilTheDataSetEnds) {
    std::vector<double> cells{1, nan, 3};
    auto owner = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owner;
    {
        FrameData frame("frame", 3);
        frame.addNumbers("v", {CellType::Float64, cells.data(), sizeof(double), std::move(owner)});
        const DataSet data = frame.finish();
        EXPECT_EQ(data.column(0).data(), cells.data());
        EXPECT_EQ(dump(data), "v N: 1 - 3");
        cells[0] = 7; // by its owner
        EXPECT_EQ(dump(data), "v N: 7 - 3");
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(cells[2], 3);
}

TEST(FrameData, BorrowedCellsAreNotWritten) {
    const std::vector<double> cells{1, 2};
    EXPECT_THROW(Column::borrowed(cells.data(), nullptr), std::invalid_argument);
    Column column = Column::borrowed(cells.data(), std::make_shared<int>(0));
    EXPECT_THROW((void)column.data(), std::logic_error);
    EXPECT_THROW(column.resize(5), std::logic_error);
    Column own(2);
    own.data()[0] = 5;
    own.data()[1] = 6;
    std::swap(column, own); // each releases what it has
    EXPECT_EQ(column.cells(2)[1], 6);
    EXPECT_EQ(own.cells(2)[1], 2);
}

TEST(FrameData, OtherTypesAndDistancesAreConverted) {
    const std::vector<std::int8_t> small{-128, 0, 127};
    const std::vector<std::uint64_t> great{0, 1, std::numeric_limits<std::uint64_t>::max()};
    const std::vector<std::int64_t> whole{-1, (std::int64_t{1} << 53) + 1, 2};
    const std::vector<float> floats{0.5F, std::numeric_limits<float>::quiet_NaN(), 2};
    const std::vector<double> doubles{1, 2, 3, 4, 5, 6};
    FrameData frame("frame", 3);
    frame.addNumbers("a", block(CellType::Int8, small));
    frame.addNumbers("b", block(CellType::UInt64, great));
    frame.addNumbers("c", block(CellType::Int64, whole));
    frame.addNumbers("d", block(CellType::Float32, floats));
    frame.addNumbers("e", {CellType::Float64, doubles.data() + 4, -2 * 8, std::make_shared<int>(0)});
    // At an address that is no multiple of eight.
    std::vector<char> bytes(1 + 3 * sizeof(double));
    std::copy_n(reinterpret_cast<const char*>(doubles.data()), 3 * sizeof(double),
                bytes.data() + 1); // NOLINT
    frame.addNumbers("f", {CellType::Float64, bytes.data() + 1, 8, std::make_shared<int>(0)});
    EXPECT_EQ(dump(frame.finish()),
              dump(readText("a,b,c,d,e,f\n-128,0,-1,0.5,5,1\n0,1,9007199254740993,,3,2\n"
                            "127,18446744073709551615,2,2,1,3\n")));
}

TEST(FrameData, TruthValuesAreZeroAndOneWithLabels) {
    const std::vector<std::uint8_t> cells{1, 0, 1};
    FrameData frame("frame", 3);
    frame.addTruths("dead", block(CellType::UInt8, cells));
    const DataSet data = frame.finish();
    EXPECT_EQ(dump(data), "dead N: True False True");
    EXPECT_EQ(data.column(0)[0], 1);

    // So are these words, as categories as well, whatever the order of the categories.
    FrameData words("frame", 4);
    words.addTexts("dead", {{2, 0, -1, 1}, {"true", "False", "TRUE", "unused"}});
    const DataSet named = words.finish();
    EXPECT_EQ(dump(named), "dead N: TRUE TRUE - False") << "the spelling that comes first";
    EXPECT_EQ(named.column(0)[0], 1);
    EXPECT_EQ(named.column(0)[3], 0);
}

TEST(FrameData, DatesCountWholeDays) {
    constexpr std::int64_t hours = 24;
    const std::int64_t none = std::numeric_limits<std::int64_t>::min();
    const std::vector<std::int64_t> times{0, -1, none, 11354 * hours};
    FrameData frame("frame", 4);
    frame.addDates("day", block(CellType::Int64, times), hours);
    frame.addDurations("since", block(CellType::Int64, times), hours);
    const DataSet data = frame.finish();
    EXPECT_EQ(dump(data), dump(readText("day,since\n1970-01-01,0\n1969-12-31 23:00,-0.041666666666666664\n,\n"
                                        "2001-02-01,11354\n")));
    ASSERT_EQ(data.notes().size(), 1U);
    EXPECT_NE(data.notes()[0].find("'1969-12-31 23:00:00' in line 2"), std::string::npos) << data.notes()[0];
}

TEST(FrameData, RefusesWhatNoFileCanHold) {
    EXPECT_THROW(FrameData("frame", 0), DataError);
    EXPECT_THROW(FrameData("frame", std::int64_t{1} << 31), DataError);
    EXPECT_THROW(FrameData("frame", 1).finish(), DataError);
    const std::vector<double> infinite{1, -std::numeric_limits<double>::infinity()};
    FrameData frame("frame", 2);
    try {
        frame.addNumbers("v", block(CellType::Float64, infinite));
        FAIL() << "taken";
    } catch (const DataError& error) {
        EXPECT_EQ(error.line(), 2);
    }
    const std::vector<std::int64_t> late{4'000'000, 0};
    FrameData dates("frame", 2);
    EXPECT_THROW(dates.addDates("day", block(CellType::Int64, late), 1), DataError);
}

TEST(FrameData, NamesAreThoseThatAFileWouldGive) {
    const std::vector<double> cells{1};
    FrameData frame("frame", 1);
    for (const char* const name : {"a", "", "a", "b\nc"})
        frame.addNumbers(name, block(CellType::Float64, cells));
    frame.addUnread("z");
    const DataSet data = frame.finish();
    EXPECT_EQ(dump(data), "a N: 1 | Var2 N: 1 | a_2 N: 1 | b c N: 1 | z N: 0");
    EXPECT_EQ(data.notes().size(), 2U);
}

} // namespace
} // namespace korvana
