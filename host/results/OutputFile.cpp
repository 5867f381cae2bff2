#include "host/results/OutputFile.h"

#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "host/results/WritingWatch.h"

namespace korvana {
namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16U;

} // namespace

void throwCannotWrite(const std::filesystem::path& target, const std::string& why) {
    throw std::runtime_error("cannot write '" + target.string() + "': " + why);
}

void throwCannotWrite(const std::filesystem::path& target, int error) {
    throwCannotWrite(target, std::generic_category().message(error));
}

PendingFile::PendingFile(std::filesystem::path target) : target_(std::move(target)), replaced_(target_) {
    throwIfWritingStopped();
    if (const WritingWatch* watch = WritingWatch::current()) watch->fileBegins(target_);
    const std::filesystem::path& place = replaced_.place();
    const std::string stem = "." + place.filename().string() + "." + std::to_string(::getpid()) + ".";
    for (int attempt = 0;; ++attempt) {
        pending_ = place.parent_path() / (stem + std::to_string(attempt) + ".part");
        unfinished_.emplace(pending_);
        const int descriptor =
            ::open(pending_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, replaced_.modeUntilThen());
        if (descriptor >= 0) {
            ::close(descriptor);
            return;
        }
        const int error = errno;
        unfinished_->keep(); // not ours
        if (error != EEXIST || attempt > 1000) throwCannotWrite(target_, error);
    }
}

void PendingFile::commit() {
    replaced_.passOn(pending_);
    if (::rename(pending_.c_str(), replaced_.place().c_str()) != 0) throwCannotWrite(target_, errno);
    unfinished_->keep();
}

OutputFile::OutputFile(std::filesystem::path target)
    : OutputFile(std::make_unique<PendingFile>(std::move(target))) {}

OutputFile::OutputFile(std::unique_ptr<PendingFile> own) : OutputFile(*own) {
    own_ = std::move(own);
}

OutputFile::OutputFile(PendingFile& pending) : pending_(pending), buffer_(bufferSize), stream_(nullptr) {
    descriptor_ = ::open(pending_.path().c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor_ < 0) throwCannotWrite(pending_.target(), errno);
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    stream_.rdbuf(this);
    stream_.exceptions(std::ios::badbit); // passes on the error of `writeAll` unchanged
}

OutputFile::~OutputFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

void OutputFile::writeAll(const char* data, std::size_t size) {
    throwIfWritingStopped();
    while (size > 0) {
        const ssize_t written = ::write(descriptor_, data, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) throwCannotWrite(pending_.target(), written < 0 ? errno : EIO);
        data += written;
        size -= static_cast<std::size_t>(written);
    }
}

void OutputFile::drain() {
    const auto size = static_cast<std::size_t>(pptr() - pbase());
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    writeAll(buffer_.data(), size);
}

OutputFile::int_type OutputFile::overflow(int_type c) {
    drain();
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    return sputc(traits_type::to_char_type(c));
}

std::streamsize OutputFile::xsputn(const char* data, std::streamsize size) {
    if (size > epptr() - pptr()) drain();
    if (size <= epptr() - pptr()) return std::streambuf::xsputn(data, size);
    // Larger than the buffer, which is empty now.
    writeAll(data, static_cast<std::size_t>(size));
    return size;
}

int OutputFile::sync() {
    drain();
    return 0;
}

void OutputFile::close() {
    drain();
    const int closed = ::close(std::exchange(descriptor_, -1));
    if (closed != 0) throwCannotWrite(pending_.target(), errno);
}

void OutputFile::commit() {
    close();
    pending_.commit();
}

void writeFile(const std::filesystem::path& target, std::string_view bytes) {
    OutputFile file(target);
    file.stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.commit();
}

} // namespace korvana
