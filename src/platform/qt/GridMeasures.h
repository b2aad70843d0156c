#pragma once

#include <cstddef>
#include <vector>

namespace imex::platform {

/// The widths of columns or the heights of rows, in twips. Where all are the same they take no memory each.
class GridMeasures {
 public:
  GridMeasures(int count, int usual) : m_count(static_cast<std::size_t>(count)), m_usual(usual) {}

  int at(int position) const { return m_own.empty() ? m_usual : m_own[static_cast<std::size_t>(position)]; }

  /// What a new one has, and all have that were not set since setAll().
  int usual() const { return m_usual; }

  bool areAllUsual() const { return m_own.empty(); }

  void set(int position, int measure) {
    if (m_own.empty()) {
      if (measure == m_usual)
        return;
      m_own.assign(m_count, m_usual);
    }
    m_own[static_cast<std::size_t>(position)] = measure;
  }

  void setAll(int measure) {
    m_own = {};
    m_usual = measure;
  }

  void setCount(int count) {
    m_count = static_cast<std::size_t>(count);
    if (!m_own.empty())
      m_own.resize(m_count, m_usual);
  }

  void remove(int position) {
    --m_count;
    if (!m_own.empty())
      m_own.erase(m_own.begin() + position);
  }

 private:
  std::size_t m_count;
  int m_usual;
  std::vector<int> m_own; ///< empty where all are usual
};

} // namespace imex::platform
