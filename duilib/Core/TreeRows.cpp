#include "duilib/Core/TreeRows.h"

#include <algorithm>

#include "duilib/Core/ListBox.h"

namespace mivo::duilib::treerows {

Span RowsInView(int scroll, int view, int rowHeight, int count) {
  if (rowHeight <= 0 || count <= 0 || view <= 0) return Span{};
  scroll = std::max(scroll, 0);
  const int first = std::min(scroll / rowHeight, count);
  // The last row with a pixel above scroll + view; 64-bit, as a long list can pass 2^31 pixels.
  const int64_t end = (static_cast<int64_t>(scroll) + view + rowHeight - 1) / rowHeight;
  return Span{first, static_cast<int>(std::min<int64_t>(end, count))};
}

bool OnExpander(int x, int rowLeft, int depth, int indent) {
  const int left = rowLeft + depth * indent;
  return indent > 0 && x >= left && x < left + indent;
}

Step KeyStep(uint32_t vk, const std::vector<Row>& rows, int current, int page) {
  const int count = static_cast<int>(rows.size());
  if (count == 0) return Step{};
  if (vk != kVkLeft && vk != kVkRight) {
    const int target = ListBox::KeyTarget(vk, current, count, page);
    return target >= 0 && target != current ? Step{Action::kSelect, target} : Step{};
  }
  if (current < 0 || current >= count) return Step{Action::kSelect, 0};
  const Row& row = rows[current];
  if (vk == kVkRight) {
    if (!row.hasChildren) return Step{};
    // An expanded row's children follow it.
    return row.expanded ? Step{Action::kSelect, current + 1} : Step{Action::kExpand, current};
  }
  if (row.hasChildren && row.expanded) return Step{Action::kCollapse, current};
  return row.parent >= 0 ? Step{Action::kSelect, row.parent} : Step{};
}

}  // namespace mivo::duilib::treerows
