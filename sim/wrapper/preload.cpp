// Start and end of the preload library: a camera in the place of the kernel, for an unmodified program.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "sim/report/report.h"
#include "sim/seam/host.h"
#include "sim/seam/real.h"
#include "sim/trace/recording.h"
#include "sim/wrapper/camera_host.h"
#include "sim/wrapper/recording_host.h"
#include "sim/wrapper/settings.h"

namespace kelvo::sim {
namespace {

CameraHost* host = nullptr;
ReportMode report_mode = ReportMode::none;
std::string* report_file = nullptr;

[[noreturn]] void refuse(const std::string& line) {
  std::fprintf(stderr, "%s\n", line.c_str());
  std::fflush(stderr);
  _exit(wrong_settings_exit_code);
}

/// Standard error when the file cannot be written: a report must not get lost.
void deliver(const std::string& text) {
  FILE* const file = report_file->empty() ? nullptr : real().fopen(report_file->c_str(), "w");
  FILE* const stream = file != nullptr ? file : stderr;
  if (file == nullptr && !report_file->empty()) {
    std::fprintf(stderr, "%s: cannot write %s\n", settings_variable, report_file->c_str());
  }
  std::fputs(text.c_str(), stream);
  std::fflush(stream);
  if (file != nullptr) real().fclose(file);
}

/// Both are kept for good: threads may still be in them when the process ends.
void record_real_devices(const std::string& name) {
  trace::OpenedRecording opened = trace::Recording::open(name);
  if (opened.recording == nullptr) refuse(std::string(settings_variable) + ": " + opened.error);
  install(new RecordingHost(*opened.recording.release()));
}

[[gnu::constructor]] void begin() {
  const char* const text = std::getenv(settings_variable);
  const ParsedSettings parsed = parse_settings(text != nullptr ? text : "");
  if (!parsed.error.empty()) refuse(parsed.error);
  if (!parsed.settings.real.empty()) return record_real_devices(parsed.settings.real);
  // Kept for good: threads may still be in the camera when the process ends.
  OpenedCamera shared = open_shared(parsed.settings);
  if (!shared.error.empty()) refuse(std::string(settings_variable) + ": " + shared.error);
  host = new CameraHost(parsed.settings, std::move(shared.camera));
  report_mode = parsed.settings.report;
  report_file = new std::string(parsed.settings.report_file);
  // The program may go to another folder before it ends.
  if (!report_file->empty()) *report_file = std::filesystem::absolute(*report_file).string();
  if (host->files().kept()) {
    if (const std::error_code error = host->prepare_files()) {
      refuse(std::string(settings_variable) + ": the folder \"" + host->files().folder().string() +
             "\" cannot be used: " + error.message());
    }
  }
  install(host);
}

/// A program that has nothing to do with a camera, like a shell on the way to one that has, gets no
/// report.
[[gnu::destructor]] void end() {
  if (host == nullptr) return;
  install(nullptr);
  const bool report_is_due = report_mode == ReportMode::text && host->owned() && host->used();
  if (report_is_due) deliver(report(host->camera(), host->name()));
  host->end();
}

}  // namespace
}  // namespace kelvo::sim
