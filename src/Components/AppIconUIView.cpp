#include "Components/AppIconUIView.h"

namespace velkin {

platform::View AppIconUIView::body() const {
  using namespace platform;
  const double edge = rawValue(iconSize);
  return Image("Velkin01")
      .frame({.width = edge, .height = edge})
      .cornerRadius(cornerRadius(iconSize))
      .accessibilityLabel("Velkin")
      .onTapGesture([taps = tapCounter, limit = tapLimit, action = action] {
        const int count = taps.get() + 1;
        taps.set(count == limit ? 0 : count);
        if (count == limit && action) action();
      });
}

}  // namespace velkin
