#include "Onboarding/AboutUIView.h"

#include "Components/AppIconUIView.h"
#include "Platform/NSPasteboard.h"

#include <array>
#include <ctime>
#include <sstream>

namespace velkin {

using namespace platform;

namespace {

constexpr double innerSpacing = 7;

std::string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

}  // namespace

std::string AboutUIView::getBuildDate() const {
  if (dictionary.creationDate <= 0) return {};
  const auto seconds = static_cast<std::time_t>(dictionary.creationDate);
  std::tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return {};
  // The months in English, as all of the page is, whatever the desktop speaks.
  constexpr std::array months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const int hour = local.tm_hour % 12 == 0 ? 12 : local.tm_hour % 12;
  std::ostringstream date;
  date << "This app was built on: " << months[static_cast<std::size_t>(local.tm_mon)] << ' ' << local.tm_mday
       << ", " << std::to_string(local.tm_year + 1900) << ' ' << hour << ':' << twoDigits(local.tm_min)
       << (local.tm_hour < 12 ? " AM" : " PM");
  return date.str();
}

std::string AboutUIView::versions() const {
  std::string text;
  for (const auto& library : dictionary.libraryVersions) {
    if (!text.empty()) text += ", ";
    text += library;
  }
  return text;
}

void AboutUIView::easterEggAction() const {
  isHemingwayEnabled->set(!isHemingwayEnabled->get());
  if (delegate != nullptr) delegate->didEnableDisableEasterEgg();
}

View AboutUIView::startAtLogin() const {
  return CheckBox("Start at Login", Binding<bool>([isOn = startsAtLogin] { return isOn.get(); },
                                                  [isOn = startsAtLogin, target = delegate](bool isEnabled) {
                                                    isOn.set(isEnabled);
                                                    UserDefaultsHelper().set(isEnabled,
                                                                             UserDefault::startAtLogin);
                                                    if (target != nullptr)
                                                      target->didClickStartAtLogin(isEnabled);
                                                  }))
      .help("Velkin's icon is in the tray after each login.");
}

View AboutUIView::userData() const {
  const auto told = [failure = failure](const std::string& sentence) { failure.set(sentence); };
  const auto message = failure.get();
  return VStack({.spacing = innerSpacing},
                {Text("User Data").font(Font::headline).accessibilityRole(AccessibilityRole::heading),
                 HStack({.spacing = innerSpacing},
                        {Button("Import",
                                [told, manager = importExportManager, failure = failure] {
                                  failure.set({});
                                  manager.importFromFile(nullptr, told);
                                }),
                         Button("Export",
                                [told, manager = importExportManager, failure = failure] {
                                  failure.set({});
                                  manager.exportToFile(nullptr, told);
                                })}),
                 Text("The file holds your API key in clear.")
                     .font(Font::caption)
                     .foregroundColor(Color::Role::secondary),
                 when(!message.empty(),
                      [&] {
                        return Text(message)
                            .font(Font::caption)
                            .foregroundColor(Color::Role::red)
                            .accessibilityRole(AccessibilityRole::alert)
                            .frame({.width = 300});
                      })})
      .padding(innerSpacing)
      .background({Color::Role::gray, 0.2})
      .cornerRadius(innerSpacing);
}

View AboutUIView::body() const {
  const auto call = [target = delegate](void (AboutUIViewDelegate::*operation)()) {
    return [target, operation] {
      if (target != nullptr) (target->*operation)();
    };
  };
  const auto name =
      "Velkin " + dictionary.shortVersionString.value_or("") + " (" + dictionary.version.value_or("") + ")";
  const auto buildDate = getBuildDate();
  const auto small = [](const std::string& text) {
    return Text(text).font(Font::caption).foregroundColor(Color::Role::secondary);
  };
  const auto libraries = versions();
  return VStack({.spacing = 2 * innerSpacing},
                {AppIconUIView{.iconSize = IconSize::large,
                               .action = [self = *this] { self.easterEggAction(); }},
                 Text(name).font(Font::title2),
                 Text("Made with care, for those who write.").foregroundColor(Color::Role::secondary),
                 when(!buildDate.empty(), [&] { return small(buildDate); }),
                 when(!libraries.empty(),
                      [&] {
                        return HStack({.spacing = innerSpacing},
                                      {small(libraries).lineLimit(1),
                                       Button(
                                           Symbol("doc.on.doc").frame({.height = 14}),
                                           [text = name + ", " + libraries] {
                                             auto& pasteboard = NSPasteboard::generalPasteboard();
                                             pasteboard.clearContents();
                                             pasteboard.setString(text, NSPasteboardTypeString);
                                           },
                                           ButtonStyle::borderless)
                                           .help("Copy the versions for a bug report")});
                      }),
                 startAtLogin(), userData(),
                 HStack({.spacing = innerSpacing},
                        {Button("Release Notes", call(&AboutUIViewDelegate::didClickReleaseNotesButton)),
                         Button("Onboarding", call(&AboutUIViewDelegate::didClickOnboardingButton))}),
                 when(isHemingwayEnabled->get(),
                      [&] {
                        return Button("-- Edit URLs & API Key --",
                                      call(&AboutUIViewDelegate::didClickEditUrlsButton), ButtonStyle::link);
                      })})
      .frame({.minWidth = 360})
      .padding(24);
}

}  // namespace velkin
