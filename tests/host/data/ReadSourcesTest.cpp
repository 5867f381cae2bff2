#include "tests/host/data/DataTestSupport.h"

#include "host/data/DataError.h"
#include "tests/support/Refusal.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <stop_token>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace korvana::test {
namespace {

/// A random table with its cells as they should be read, and as text.
struct RandomTable {
    std::string text;
    std::string expected; ///< as by dump

    RandomTable(unsigned seed, int rows) {
        std::mt19937 random(seed);
        const auto chance = [&](unsigned n) { return random() % n == 0; };
        std::vector<std::string> columns{"x N:", "g T:", "k N:"};
        text = chance(2) ? "x,g,k\n" : "\"x\",\"g\",\"k\"\r\n";
        for (int i = 0; i < rows; ++i) {
            std::string x = std::to_string(static_cast<int>(random() % 2000) - 1000);
            if (chance(2)) x += "." + std::to_string(random() % 100000) + "1";
            if (chance(9)) x = "";
            std::string g;
            for (auto n = random() % 6; n > 0; --n)
                g += "ab,;\n\"x"[random() % 7];
            g = "g" + g + "h";
            const std::string k = std::to_string(random() % 2);
            std::string quoted;
            for (const char c : g)
                quoted.append(c == '"' ? 2 : 1, c);
            text.append(x).append(",").append(chance(4) ? " " : "").append("\"").append(quoted).append("\",");
            text.append(chance(5) ? "\"" + k + "\"" : k).append(chance(3) ? "\r\n" : "\n");
            if (chance(20)) text += "\n";
            columns[0].append(" ").append(x.empty() ? "-" : numberText(std::strtod(x.c_str(), nullptr)));
            columns[1].append(" ").append(g);
            columns[2].append(" ").append(k);
        }
        expected = columns[0] + " | " + columns[1] + " | " + columns[2];
    }
};

/// The text as gzip packs it.
std::string packed(std::string_view text) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string out(deflateBound(&stream, text.size()) + 32, '\0');
    std::string in(text);
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

/// A pipe with a name, into which a thread writes a text in pieces.
class Pipe {
public:
    Pipe(const std::string& text, std::size_t pieces) {
        std::filesystem::remove(name_.path());
        EXPECT_EQ(mkfifo(name_.path().c_str(), 0600), 0);
        writer_ = std::thread([path = name_.path(), text, pieces] {
            std::ofstream end(path, std::ios::binary);
            for (std::size_t i = 0; i < pieces; ++i) {
                const std::size_t at = text.size() * i / pieces;
                end << text.substr(at, text.size() * (i + 1) / pieces - at) << std::flush;
            }
        });
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() { writer_.join(); }

    const std::filesystem::path& path() const { return name_.path(); }

private:
    TemporaryFile name_{""};
    std::thread writer_;
};

TEST(ReadSources, WhereTheBytesComeFromDoesNotShow) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        const RandomTable table(seed, 150);
        const auto read = [](const std::filesystem::path& path) { return dump(readData(path)); };
        EXPECT_EQ(read(TemporaryFile(table.text).path()), table.expected);
        EXPECT_EQ(read(Pipe(table.text, seed).path()), table.expected);
        const std::string whole = packed(table.text);
        EXPECT_EQ(read(TemporaryFile(whole, ".csv.gz").path()), table.expected);
        EXPECT_EQ(read(TemporaryFile(whole, ".dat").path()), table.expected) << "known by its content";
        EXPECT_EQ(read(Pipe(whole, seed).path()), table.expected);
        const std::size_t cut = table.text.size() / seed;
        const std::string pieces = packed(table.text.substr(0, cut)) + packed("") +
                                   packed(table.text.substr(cut)) + std::string(seed % 3 * 100, '\0');
        EXPECT_EQ(read(TemporaryFile(pieces, ".gz").path()), table.expected);
        for (const std::size_t bytes : {1U, 2U, 7U, 64U, 1000U})
            for (const std::size_t chunk : {1U, 37U, 500U, 100'000U}) {
                TextSource slow(table.text, bytes);
                ASSERT_EQ(dump(readDelimited(slow, {}, {1 + seed % 3, chunk})), table.expected)
                    << "seed " << seed << ", " << bytes << " bytes at a time, chunks of " << chunk;
            }
    }
}

/// A pipe that holds these bytes and ends; to be closed.
int pipeOf(const std::string& bytes) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    EXPECT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(ends[1]);
    return ends[0];
}

TEST(ReadSources, StandardInputIsReadFromWhereItStands) {
    const int before = dup(STDIN_FILENO);
    const TemporaryFile file("n;t\nx;d\n1,5;30.1.1995\n");
    const int opened = open(file.path().c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(lseek(opened, 4, SEEK_SET), 4);
    dup2(opened, STDIN_FILENO);
    EXPECT_EQ(dump(readData("-")), "x N: 1.5 | d D: 2449748");
    const int piped = pipeOf(packed("g\nb\na\n"));
    dup2(piped, STDIN_FILENO);
    EXPECT_EQ(dump(readData("-")), "g T: b a");
    EXPECT_NE(refusalOf<DataError>([] { readData("-"); }).find("standard input: the file is empty"),
              std::string::npos);
    // A file that the shell opened, and its <(command).
    EXPECT_EQ(readData("/dev/fd/" + std::to_string(opened)).fileName(), file.path().filename());
    const int process = pipeOf("a\n1\n");
    EXPECT_EQ(readData("/dev/fd/" + std::to_string(process)).fileName(), "pipe");
    dup2(before, STDIN_FILENO);
    for (const int each : {before, opened, piped, process})
        close(each);
}

TEST(ReadSources, BigTextsAreReadByThreadsAndGrowTheirColumns) {
    const RandomTable table(5, 250'000); // above the size from which threads are started
    EXPECT_EQ(dump(readText(table.text)), table.expected);
    // More rows than estimated for a pipe.
    EXPECT_EQ(dump(readData(Pipe(table.text, 1).path())), table.expected);
    EXPECT_EQ(dump(readData(TemporaryFile(packed(table.text), ".gz").path())), table.expected);
    std::string longer = "x\n" + std::string(1 << 20, '0') + "1\n"; // the first row is not like the others
    std::string expected = "x N: 1";
    for (int i = 0; i < 30'000; ++i) {
        longer += "2\n";
        expected += " 2";
    }
    EXPECT_EQ(dump(readData(TemporaryFile(longer).path())), expected);
    std::string digits = "x\n"; // so many that the memory of the column moves while it grows
    for (int i = 0; i < 1'500'000; ++i)
        digits.append(1, static_cast<char>('0' + i % 10)).append("\n");
    const DataSet data = readData(Pipe(digits, 1).path());
    for (std::size_t i = 0; i < 1'500'000; ++i)
        ASSERT_EQ(data.column(0)[i], static_cast<double>(i % 10)) << "row " << i;
}

TEST(ReadSources, SmallTextsTakeOneThreadAndBigOnesTheCoresThatTheProcessMayUse) {
    const auto readBy = [](std::size_t bytes) {
        std::string text = "x\n";
        while (text.size() < bytes)
            text += "1234567\n";
        const std::string layout = readText(text).layout();
        return layout.substr(layout.rfind("read by"));
    };
    cpu_set_t all;
    ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
    const int cores = std::min(CPU_COUNT(&all), 8);
    EXPECT_EQ(readBy(5 << 20),
              cores == 1 ? "read by 1 thread" : "read by " + std::to_string(cores) + " threads");
    EXPECT_EQ(readBy(4'000'000), "read by 1 thread");
    std::size_t first = 0;
    while (!CPU_ISSET(first, &all))
        ++first;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(readBy(5 << 20), "read by 1 thread");
    EXPECT_EQ(sched_setaffinity(0, sizeof all, &all), 0);
}

TEST(ReadSources, WhatGzipLeftIncompleteOrDamagedIsNamed) {
    const auto refusal = [](const std::string& bytes) {
        const TemporaryFile file(bytes, ".gz");
        return refusalOf<DataError>([&] { readData(file.path()); });
    };
    const RandomTable table(3, 300);
    const std::string whole = packed(table.text);
    for (std::size_t length = 2; length < whole.size(); length += 1 + length / 8)
        EXPECT_NE(refusal(whole.substr(0, length)).find("ends too early"), std::string::npos) << length;
    for (std::size_t at = 3; at < whole.size(); at += 97) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
        const std::string said = refusal(damaged);
        if (at < 10) continue; // the time and the system are stored there
        EXPECT_TRUE(said.find("damaged") != std::string::npos || said.find("too early") != std::string::npos)
            << at << said;
    }
    EXPECT_NE(refusal(whole + "and more").find("damaged"), std::string::npos);
    EXPECT_NE(refusal(packed("")).find("empty"), std::string::npos);
}

/// Stops a reader that waits for a pipe, before or after writing has begun.
TEST(ReadSources, AStopIsSeenWhileAPipeKeepsOneWaiting) {
    for (const bool begun : {false, true}) {
        const TemporaryFile name("");
        std::filesystem::remove(name.path());
        ASSERT_EQ(mkfifo(name.path().c_str(), 0600), 0);
        std::fstream end;
        if (begun) {
            end.open(name.path()); // opening for reading too does not wait for a reader
            end << "a,b\n1,2\n" << std::flush;
        }
        std::stop_source stop;
        ReadOptions options;
        options.stop = stop.get_token();
        std::jthread later([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            stop.request_stop();
        });
        EXPECT_THROW(readData(name.path(), options), ReadingStopped);
    }
}

/// A file in small pieces, to which something happens before one of them is read.
class ChangingSource final : public ByteSource {
public:
    ChangingSource(const std::filesystem::path& path, int piece, std::function<void()> change)
        : file_(openSource(path)), piece_(piece), change_(std::move(change)) {}

    std::size_t read(std::span<char> room) override {
        if (piece_-- == 0) change_();
        return file_->read(room.first(std::min<std::size_t>(room.size(), 20'000)));
    }
    void rewind() override { file_->rewind(); }
    void checkUnchanged() const override { file_->checkUnchanged(); }
    std::size_t size() const override { return file_->size(); }
    const std::string& name() const override { return file_->name(); }

private:
    std::unique_ptr<ByteSource> file_;
    int piece_;
    std::function<void()> change_;
};

/// At any moment: the parts read before and after no longer belong together, even if they fit.
TEST(ReadSources, AFileThatChangesWhileItIsReadIsRefused) {
    std::string text = "time,status,group\n";
    for (int i = 0; i < 10'000; ++i)
        text += std::to_string(i) + (i % 3 == 0 ? ".5,1,placebo\n" : ",0,drug\n");
    const auto overwrite = [](const std::filesystem::path& path, const char* with) {
        std::ofstream(path, std::ios::binary | std::ios::in).seekp(60'000) << with;
    };
    const std::function<void(const std::filesystem::path&)> changes[] = {
        [](const auto& path) { std::filesystem::resize_file(path, 30'000); },
        [](const auto& path) { std::ofstream(path, std::ios::app) << "7,7,7\n"; },
        [&](const auto& path) { overwrite(path, "\"\n,,,\n"); },
        [&](const auto& path) { overwrite(path, "x"); },
    };
    for (const auto& change : changes) {
        bool changed = true;
        for (int piece = 0; changed; ++piece) {
            const TemporaryFile file(text);
            std::filesystem::last_write_time(file.path(), std::filesystem::file_time_type{});
            changed = false;
            ChangingSource source(file.path(), piece, [&] {
                change(file.path());
                changed = true;
            });
            const std::string said = refusalOf<DataError>([&] { readDelimited(source, {}, {2, 20'000}); });
            EXPECT_EQ(said.find("the file changed while it was read") != std::string::npos, changed) << said;
            EXPECT_TRUE(changed || piece > 10) << "read in few pieces";
        }
    }
}

} // namespace
} // namespace korvana::test
