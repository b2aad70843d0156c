#pragma once

#include "platform/system/system.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace imex::platform {

/// A text that grows at its end, to any size. Where it grows it is moved by the system, page by page, rather than
/// copied byte by byte into fresh memory.
class TextBuffer {
 public:
  operator std::string_view() const { return {m_bytes.get(), m_size}; }
  std::size_t size() const { return m_size; }

  TextBuffer& append(std::string_view text) {
    if (text.size() > m_capacity - m_size)
      grow(text.size());
    if (!text.empty())
      std::memcpy(m_bytes.get() + m_size, text.data(), text.size());
    m_size += text.size();
    return *this;
  }

  void erase(std::size_t at, std::size_t size) {
    char* const place = m_bytes.get() + at;
    std::memmove(place, place + size, m_size - at - size);
    m_size -= size;
  }

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };

  void grow(std::size_t more) {
    constexpr std::size_t kLeast = 64;
    const std::size_t capacity = std::max({kLeast, 2 * m_capacity, m_size + more});
    void* const bytes = std::realloc(m_bytes.get(), capacity);
    if (bytes == nullptr)
      throw std::bad_alloc();
    static_cast<void>(m_bytes.release());
    m_bytes.reset(static_cast<char*>(bytes));
    m_capacity = capacity;
    system::expectFilling(bytes, capacity);
  }

  std::unique_ptr<char, Free> m_bytes;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

} // namespace imex::platform
