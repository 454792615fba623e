// Every fixed path and signal number of the device, in one place.
#pragma once

namespace device {

// Daemons and their wake-up signals.
inline constexpr const char kZrCamCtlDPidFile[] = "/var/run/zrcamctld.pid";
inline constexpr const char kVmfdPidFile[] = "/var/run/vmfd.pid";
inline constexpr int kSignalSettingsChanged = 10;  // SIGUSR1: reread settings (set, apply)
inline constexpr int kSignalDefault = 12;          // SIGUSR2: restore defaults / fisheye changed

// Return page.
inline constexpr const char kWebRoot[] = "/web";
inline constexpr const char kSaveCfgCommand[] = "/usr/sbin/savecfg > /dev/null 2>/dev/null";
inline constexpr const char kChangedFlagFile[] = "/tmp/ZrConfChg";
inline constexpr const char kClearChangedCommand[] = "rm /tmp/ZrConfChg";

// Product code.
inline constexpr const char kBasicConfProcFile[] = "/proc/driver/qe_basic_conf";
inline constexpr const char kBasicConfCopyFormat[] = "/tmp/qell_conf_%d.txt";
inline constexpr const char kCatCommandFormat[] = "/bin/cat %s > %s";

// Saves of the records and of the fisheye file take turns on this lock: a
// file on the RAM file system beside the pid files, there even when the
// settings directory is read-only or full.
inline constexpr const char kSettingsLockFile[] = "/var/run/zrcamctl.lock";

// Settings records.
inline constexpr const char kRecordPathFormat[] = "/opt/kfp/etc/ZrConf/ZrCamCtlConf%c%c.bin";
inline constexpr const char kPtzPresetFile[] = "/opt/kfp/etc/ZrConf/PtzConf.bin";

// Fisheye correction.
inline constexpr const char kFisheyeConfFile[] = "/opt/kfp/etc/fish_eye.conf";

}  // namespace device
