#include "solver/Islands.h"
#include <numeric>

namespace kel {

void Islands::reset(std::size_t numNodes)
{
  m_parents.resize(numNodes);
  std::iota(m_parents.begin(), m_parents.end(), Index(0));
  m_itemNodes.clear();
}

Index Islands::find(Index node)
{
  while (m_parents[node] != node) node = m_parents[node] = m_parents[m_parents[node]];
  return node;
}

void Islands::join(Index node1, Index node2)
{
  if (!node1 || !node2) return;
  const Index root1 = find(node1);
  const Index root2 = find(node2);
  if (root1 < root2)
    m_parents[root2] = root1;
  else
    m_parents[root1] = root2;
}

void Islands::build()
{
  constexpr Index none = 0xFFFFFFFF;
  for (Index& parent : m_parents) parent = find(parent);
  m_islandOfRoot.assign(m_parents.size(), none);
  m_begins.assign(1, 0);
  for (Index& node : m_itemNodes) {
    if (node == 0) continue;
    node = getRoot(node);
    Index& island = m_islandOfRoot[node];
    if (island == none) {
      island = static_cast<Index>(m_begins.size() - 1);
      m_begins.push_back(0);
    }
    ++m_begins[island + 1];
  }
  std::partial_sum(m_begins.begin(), m_begins.end(), m_begins.begin());
  std::vector<Index> next(m_begins.begin(), m_begins.end() - 1);
  m_items.resize(m_begins.back());
  for (std::size_t item = 0; item < m_itemNodes.size(); ++item)
    if (const Index root = m_itemNodes[item]; root != 0)
      m_items[next[m_islandOfRoot[root]]++] = static_cast<Index>(item);
}

} // namespace kel
