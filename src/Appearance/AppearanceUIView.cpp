#include "Appearance/AppearanceUIView.h"

#include "Appearance/AppearanceButtonRow.h"
#include "Appearance/SizePickerUIView.h"
#include "Appearance/ZoomPickerUIView.h"
#include "Components/AppIconUIView.h"

namespace velkin {

platform::View AppearanceUIView::body() const {
  using namespace platform;
  return VStack({.spacing = 0, .alignment = Alignment::fill},
                {HStack({Spacer(), AppIconUIView{}, Spacer()}).padding(EdgeInsets::vertical(4)), Divider(),
                 View(SizePickerUIView{.delegate = delegate, .defaults = defaults}), Divider(),
                 View(ZoomPickerUIView{.defaults = defaults, .webView = webView, .samples = samples}),
                 Divider(), sideBar, Divider(), View(AppearanceButtonRow{delegate})});
}

}  // namespace velkin
