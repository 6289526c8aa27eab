#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "controls/faults.h"

namespace velgrove {

/// An ordered collection without keys. Positions count from 1. Items are shared: a window that works on an
/// item keeps it alive after it has left the collection.
template <class Item>
class Collection {
 public:
  using Ref = std::shared_ptr<Item>;

  Ref add(Ref item) {
    m_items.push_back(std::move(item));
    return m_items.back();
  }
  /// The item at a position; Fault::Subscript when there is none.
  [[nodiscard]] const Ref& item(int position) const { return m_items[indexOf(position)]; }
  [[nodiscard]] int count() const { return static_cast<int>(m_items.size()); }
  /// Takes the item at a position out; later items move up. Fault::Subscript when there is none.
  void Remove(int position) {
    m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(indexOf(position)));
  }

  [[nodiscard]] auto begin() const { return m_items.begin(); }
  [[nodiscard]] auto end() const { return m_items.end(); }

 private:
  [[nodiscard]] std::size_t indexOf(int position) const {
    if (position < 1 || position > count())
      throw RunTimeError(Fault::Subscript, "no item " + std::to_string(position) + " in a collection of " +
                                               std::to_string(count()));
    return static_cast<std::size_t>(position) - 1;
  }

  std::vector<Ref> m_items;
};

}  // namespace velgrove
