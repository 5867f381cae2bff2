#pragma once

#include <cstddef>
#include <functional>

namespace korvana {

/** Calls work(0), ..., work(count - 1), each once, on the given number of threads, started in ascending
   order. When calls throw, no further ones are started and the exception of the lowest number is thrown: the
   outcome is that of a plain loop. */
void forEachInOrder(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work);

} // namespace korvana
