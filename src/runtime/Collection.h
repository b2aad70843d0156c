#pragma once

#include "runtime/Integer.h"
#include "runtime/RuntimeError.h"
#include "runtime/text.h"

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace imex {

/// An ordered list whose positions count from 1 and whose items may carry a key. Keys are compared without case.
/// A list is held by std::shared_ptr (CollectionPtr), because look-ups hand out the shared list itself; "nothing" is a
/// null pointer.
template <class T>
class Collection {
 public:
  Collection() = default;
  /// These items in this order, without keys.
  Collection(std::initializer_list<T> items) : m_items(items) {}

  /// The number of items, and whether there is none.
  std::size_t count() const { return m_items.size(); }
  bool isEmpty() const { return m_items.empty(); }

  /// Appends without a key.
  void add(T item) { m_items.push_back(std::move(item)); }

  /// Appends under a key. Error 457 where the key is taken; the list is then unchanged.
  void add(T item, std::string_view key) {
    const auto [place, isNew] = m_keys.try_emplace(upperCase(key), m_items.size());
    if (!isNew)
      throw RuntimeError(ErrorNumber::keyAlreadyAssociated);
    try {
      m_items.push_back(std::move(item));
    } catch (...) {
      m_keys.erase(place);
      throw;
    }
  }

  /// Whether an item has this key.
  bool contains(std::string_view key) const { return m_keys.contains(upperCase(key)); }

  /// The item at a position from 1 to count(). Error 9 outside.
  template <WholeNumber P>
  const T& item(P position) const {
    if (std::cmp_less(position, 1) || std::cmp_greater(position, m_items.size()))
      throw RuntimeError(ErrorNumber::subscriptOutOfRange);
    return m_items[static_cast<std::size_t>(position) - 1];
  }
  /// The same, to be changed.
  template <WholeNumber P>
  T& item(P position) {
    return const_cast<T&>(std::as_const(*this).item(position));
  }

  /// The item under a key. Error 5 for an unknown key.
  const T& item(std::string_view key) const {
    const auto found = m_keys.find(upperCase(key));
    if (found == m_keys.end())
      throw RuntimeError(ErrorNumber::invalidProcedureCall);
    return m_items[found->second];
  }

  /// The items in order, to be read.
  auto begin() const { return m_items.begin(); }
  auto end() const { return m_items.end(); }

 private:
  std::vector<T> m_items;
  std::unordered_map<std::string, std::size_t> m_keys;
};

template <class T>
using CollectionPtr = std::shared_ptr<Collection<T>>;

using Strings = Collection<std::string>;
using StringsPtr = CollectionPtr<std::string>;

} // namespace imex
