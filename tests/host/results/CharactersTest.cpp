#include <QStringList>
#include <QXmlStreamReader>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "host/results/Utf8.h"
#include "host/results/WriteBook.h"
#include "host/results/XlsxText.h"
#include "tests/host/results/Books.h"
#include "tests/host/results/FilesFixture.h"

namespace korvana {
namespace {

/// Reads a document to its end; it must be well formed. Returns the texts of the elements called `name`.
QStringList textsIn(const std::string& xml, const char* name) {
    QStringList texts;
    QXmlStreamReader reader(QByteArray::fromStdString(xml));
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QString(name))
            texts += reader.readElementText(QXmlStreamReader::IncludeChildElements);
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << " at "
                                    << reader.characterOffset() << " in " << xml.substr(0, 300);
    return texts;
}

/// The text of a cell as programs read it: each _xHHHH_ is a character.
std::string unescapedCell(const QString& text) {
    QString plain;
    for (qsizetype i = 0; i < text.size();) {
        bool number = false;
        const ushort code = text.mid(i + 2, 4).toUShort(&number, 16);
        if (number && text.mid(i, 2) == "_x" && text.mid(i + 6, 1) == "_") {
            plain += QChar(code);
            i += 7;
        } else {
            plain += text[i++];
        }
    }
    return plain.toStdString();
}

/// Of every class of characters some, the first and the last: controls, marks, signs of XML, surrogates,
/// private ones, no characters, the ends of the planes, byte order marks; and bytes that are no UTF-8.
std::vector<std::string> characters() {
    std::vector<std::string> all{"\xFF",    "\xC3",       "\xC0\xAF", "\xF4\x90\x80\x80",
                                 "_x0041_", "__x00e4__x", "_x"};
    for (const char32_t code :
         {0x00U,    0x01U,    0x08U,    0x09U,    0x0AU,    0x0BU,     0x0DU,     0x1BU,    0x1FU,   0x26U,
          0x3CU,    0x3EU,    0x5DU,    0x7FU,    0x80U,    0x85U,     0x9FU,     0xA0U,    0xADU,   0x301U,
          0x200BU,  0x2028U,  0x2029U,  0x202EU,  0x5B57U,  0xD7FFU,   0xD800U,   0xDBFFU,  0xDC00U, 0xDFFFU,
          0xE000U,  0xF8FFU,  0xFDD0U,  0xFDEFU,  0xFEFFU,  0xFFF9U,   0xFFFDU,   0xFFFEU,  0xFFFFU, 0x10000U,
          0x1F600U, 0x1FFFEU, 0x1FFFFU, 0xE0001U, 0xF0000U, 0x10FFFDU, 0x10FFFEU, 0x10FFFFU})
        appendCodePoint(all.emplace_back(), code);
    return all;
}

/// A book with a text in every place that takes one.
ResultsBook bookOf(const std::string& text) {
    ResultsBook book;
    book.analysis = book.source = text;
    book.notes = book.iterations = {text};
    book.messages = {{1, text, text, ResultMessage::Severity::Warning}};
    book.append(Report{text, {text}});
    Spreadsheet sheet{text, {text}, {text}, {}};
    sheet.footnotes = {text};
    sheet.columns.push_back({text, text, {}, std::vector<std::string>{text}, "text", text});
    sheet.columns.push_back({"", "", {}, Spreadsheet::Dictionary{{0}, {text}}});
    book.append(std::move(sheet));
    Chart chart{test::stepChart()};
    chart.info.title = chart.info.xAxis.title = chart.info.yAxis.title = text;
    chart.info.notes = {text};
    for (ozm::ChartSeries& series : chart.info.series)
        series.legend = text;
    book.append(std::move(chart));
    return book;
}

/// Whatever the characters, in all places at once: each file is well formed, and files for programs have
/// them as they are, except those that are no characters of Unicode or of the format.
TEST_F(Files, AreWellFormedWhateverTheCharacters) {
    std::string all;
    for (const std::string& one : characters())
        all += "a" + one + "b";
    for (const std::string& text : {all, std::string("n\xEF\xBF\xBF"), std::string("\xED\xA0\x80 _x0041_")}) {
        const auto files = writeBook(bookOf(text), directory_, FormatSet::all());
        ASSERT_EQ(files.size(), 9U);
        for (const fs::path& file : files) {
            const std::string bytes = read(file);
            const std::string ending = file.extension().string();
            if (ending == ".txt" || ending == ".csv" || ending == ".json" || ending == ".html") {
                std::string_view rest = bytes;
                std::string again;
                while (!rest.empty())
                    appendCodePoint(again, takeCodePoint(rest));
                EXPECT_EQ(again, bytes) << file << " is not UTF-8";
            }
            EXPECT_TRUE(ending != ".html" || !textsIn(bytes, "p").isEmpty()) << file;
            EXPECT_TRUE(ending != ".svg" || !textsIn(bytes, "text").isEmpty()) << file;
            EXPECT_TRUE(ending != ".pdf" || bytes.starts_with("%PDF-")) << file;
            EXPECT_TRUE(ending != ".png" || bytes.starts_with("\x89PNG")) << file;
        }
        std::string valid;
        for (std::string_view rest = text; !rest.empty();)
            appendCodePoint(valid, takeCodePoint(rest));
        const auto json = nlohmann::json::parse(read(directory_ / "results.json"));
        EXPECT_EQ(json["spreadsheets"][0]["rows"][0]["cells"], nlohmann::json({valid, valid}));

        const fs::path unpacked = directory_ / "unpacked";
        const std::string command = "python3 -m zipfile -e '" + (directory_ / "results.xlsx").string() +
                                    "' '" + unpacked.string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        for (const auto& part : fs::recursive_directory_iterator(unpacked)) {
            if (!part.is_regular_file()) continue;
            for (const QString& cell : textsIn(read(part.path()), "t")) {
                const std::string back = unescapedCell(cell);
                EXPECT_TRUE(shownLine(back).empty() || back == "Iterations" ||
                            back.find(shownLine(text)) != std::string::npos)
                    << part.path() << ": " << back;
            }
        }
        const QStringList cells = textsIn(read(unpacked / "xl/worksheets/sheet2.xml"), "t");
        ASSERT_EQ(cells.size(), 9); // title, note, three headings, row heading, two cells, footnote
        EXPECT_EQ(unescapedCell(cells.back()), oneLine(text));
        fs::remove_all(unpacked);
    }
}

/// Every code point, also those that UTF-8 must not encode: what texts become is XML.
TEST(Characters, OfAllOfUnicodeAreMadeFitForXml) {
    constexpr char32_t step = 0x400;
    for (char32_t begin = 0; begin <= 0x10FFFF; begin += step) {
        std::string text;
        for (char32_t code = begin; code < begin + step; ++code)
            appendCodePoint(text, code);
        for (const std::string& shown : {escaped(text), escaped(oneLine(text)), escaped(xlsxText(text))})
            ASSERT_EQ(textsIn("<t>" + shown + "</t>", "t").size(), 1)
                << "from U+" << std::hex << std::uint32_t{begin};
    }
}

/// Texts around the most that a cell holds, of characters that need one and two units, and of escapes.
TEST(Characters, ACellHoldsWhatTheFormatAllowsAndSaysWhatItCuts) {
    for (const std::string piece : {"x", "\xC3\xA4", "\xF0\x9F\x98\x80", "_x0041_", "a_x", "__x005F_"}) {
        std::string text;
        for (std::size_t units = 0; units < mostCellCharacters - 30; units += utf16Units(piece))
            text += piece;
        for (int more = 0; more < 40; ++more, text += piece) {
            const std::string cell = xlsxText(text);
            EXPECT_LE(utf16Units(cell), mostCellCharacters);
            const std::string back = unescapedCell(QString::fromStdString(cell));
            if (isCutInXlsx(text)) {
                EXPECT_TRUE(back.ends_with("\u2026"));
                EXPECT_TRUE(text.starts_with(back.substr(0, back.size() - 3)));
                EXPECT_GT(utf16Units(cell), mostCellCharacters - 8);
            } else {
                EXPECT_EQ(back, text);
            }
        }
        EXPECT_TRUE(isCutInXlsx(text)) << piece;
    }
}

TEST_F(Files, AWorkbookSaysThatItsTextsAreCut) {
    const auto saysSo = [&](const ResultsBook& book) {
        writeBook(book, directory_, parseFormats("xlsx"));
        const fs::path unpacked = directory_ / "unpacked";
        const std::string command = "python3 -m zipfile -e '" + (directory_ / "results.xlsx").string() +
                                    "' '" + unpacked.string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        const QStringList lines = textsIn(read(unpacked / "xl/worksheets/sheet1.xml"), "t");
        return !lines.filter("Texts of more than 32,767 characters").isEmpty();
    };
    const auto book = [](const std::string& cell, const std::string& line) {
        ResultsBook made;
        made.append(Report{"r", {line}});
        made.append(Spreadsheet{"s", {}, {}, {{"c", "", {}, std::vector<std::string>{cell}}}});
        return made;
    };
    const std::string most(mostCellCharacters, 'x');
    EXPECT_FALSE(saysSo(book(most, most)));
    EXPECT_TRUE(saysSo(book(most + "x", most)));
    EXPECT_TRUE(saysSo(book(most, most + "x")));
}

} // namespace
} // namespace korvana
