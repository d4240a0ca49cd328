#pragma once
#include "kel/Types.h"
#include <cstddef>
#include <span>
#include <vector>

namespace kel {

/// Sorts items, which act on pairs of nodes, into islands that share no node. Node 0 is the world: it joins
/// nothing, and items that act on it alone are in no island.
class Islands
{
public:
  /// Starts with `numNodes` lonely nodes and no items.
  void reset(std::size_t numNodes);
  /// Puts two nodes into one island. Either can be 0.
  void join(Index node1, Index node2);
  /// Adds an item, which gets the next number and acts on a node and all that are joined with it.
  void addItem(Index node) { m_itemNodes.push_back(node); }
  /// Ends the joining.
  void build();

  /// The node that stands for all that are joined with a node, or with those of an item.
  Index getRoot(Index node) const { return m_parents[node]; }
  Index getItemRoot(std::size_t item) const { return m_itemNodes[item]; }

  std::size_t size() const { return m_begins.empty() ? 0 : m_begins.size() - 1; }
  /// The items of an island, lowest number first. Islands come in the order of their lowest items.
  std::span<const Index> items(std::size_t island) const
  {
    return {m_items.data() + m_begins[island], m_items.data() + m_begins[island + 1]};
  }

private:
  Index find(Index node);

  std::vector<Index> m_parents;
  std::vector<Index> m_itemNodes;
  std::vector<Index> m_islandOfRoot;
  std::vector<Index> m_begins;
  std::vector<Index> m_items;
};

} // namespace kel
