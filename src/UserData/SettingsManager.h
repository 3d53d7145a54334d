#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "UserData/VelkinSettings.h"

namespace velkin {

/// Between the settings and their document. Any thread.
class SettingsManager {
 public:
  UserDefaultsHelper defaults;

  /// Everything but empty groups and the history, as a plain read gives it: the toolbar's flag is false where
  /// it was never stored, and the zoom has the noise of its single precision.
  VelkinSettings getUserDefaultSettings() const;
  /// Stores the fields that are present, unseen, and leaves the others as they are. Nothing is applied: what
  /// reads the settings finds them at its next read.
  void setUserDefaultSettings(const VelkinSettings& settings) const;
};

}  // namespace velkin
