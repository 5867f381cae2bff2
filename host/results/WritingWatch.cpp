#include "host/results/WritingWatch.h"

#include <utility>

namespace korvana {
namespace {

thread_local const WritingWatch* watch = nullptr;

} // namespace

WritingWatch::WritingWatch(std::stop_token stop, FileBegins begins)
    : stop_(std::move(stop)), begins_(std::move(begins)), before_(std::exchange(watch, this)) {}

WritingWatch::~WritingWatch() {
    watch = before_;
}

const WritingWatch* WritingWatch::current() {
    return watch;
}

void WritingWatch::fileBegins(const std::filesystem::path& target) const {
    if (begins_) begins_(target);
}

void throwIfWritingStopped() {
    if (watch != nullptr && watch->stop().stop_requested()) throw WritingStopped();
}

} // namespace korvana
