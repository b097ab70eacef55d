#pragma once

namespace bvconn::detail {

/// While it lives, the calling thread's settings files are looked at once each: what is asked of
/// one file within a moment is answered from one state of it. Moments nest; a write ends what was
/// seen of its file.
class SettingsMoment {
 public:
  SettingsMoment();
  ~SettingsMoment();
  SettingsMoment(const SettingsMoment&) = delete;
  SettingsMoment& operator=(const SettingsMoment&) = delete;
};

}  // namespace bvconn::detail
