#include "Appearance/ZoomSamples.h"

namespace velkin {

ZoomSamples::ZoomSamples() = default;

ZoomedTextWebViewController& ZoomSamples::operator[](AppearanceFontSize size) {
  auto& controller = controllers_[static_cast<std::size_t>(size)];
  if (!controller) {
    controller = std::make_unique<ZoomedTextWebViewController>(pool_);
    controller->show(rawValue(size), ZoomedTextWebViewController::samplePage());
  }
  return *controller;
}

}  // namespace velkin
