// Thumbnails: images through libvips (shrink-on-load, orientation applied), videos through one FFmpeg
// frame, PDFs through poppler's rendering of page 1. Every kind ends as a JPEG encoded by libvips and
// written atomically, so a reader never sees half a file and a failure leaves nothing behind.
#include "scan/thumbnail_maker.h"

#include <fcntl.h>
#include <unistd.h>
#include <vips/vips.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "scan/ffmpeg_handles.h"
#include "scan/media_libs.h"
#include "scan/regular_file.h"
#include "scan/thumbnail_render.h"

namespace orrelin {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// The longest one file may hold up a scan.
constexpr auto kTimeLimit = std::chrono::seconds(15);

std::optional<std::string> render(const fs::path& source, FileKind kind, const ffmpeg::Deadline& deadline) {
  RegularFile file(source);
  if (!file.ok()) return std::nullopt;
  std::string name = file.reopenPath();
  switch (kind) {
    case FileKind::image:
      return thumbs::fromImage(name);
    case FileKind::video:
      return thumbs::fromVideo(name, deadline);
    case FileKind::pdf:
      return thumbs::fromPdf(name);
    default:
      return std::nullopt;
  }
}

// What the rendering thread hands back. Shared, because after a time-out the waiter leaves and the
// thread finishes on its own; its late answer is then dropped here.
struct Job {
  std::mutex mutex;
  std::condition_variable done;
  bool finished = false;                // Under mutex.
  std::optional<std::string> jpeg;      // Under mutex.
  std::atomic<bool> cancelled = false;  // Set by the waiter when it gives up; FFmpeg polls it.
};

// Writes `bytes` to a temporary file beside `destination` and renames it into place.
bool writeAtomically(const std::string& bytes, const fs::path& destination) {
  fs::path folder = destination.parent_path();
  std::error_code ignored;
  if (!folder.empty()) fs::create_directories(folder, ignored);  // A failure shows at the open below.

  static std::atomic<unsigned> counter = 0;
  fs::path temp;
  int fd = -1;
  for (int attempt = 0; attempt < 8 && fd < 0; ++attempt) {
    temp = destination;
    temp += ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(counter.fetch_add(1)) + "-" +
            std::to_string(Clock::now().time_since_epoch().count() % 1000000);
    fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0 && errno != EEXIST) return false;
  }
  if (fd < 0) return false;

  const char* data = bytes.data();
  size_t left = bytes.size();
  bool ok = true;
  while (ok && left > 0) {
    ssize_t n = ::write(fd, data, left);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      ok = false;
    } else {
      data += n;
      left -= static_cast<size_t>(n);
    }
  }
  if (::close(fd) != 0) ok = false;
  if (ok && ::rename(temp.c_str(), destination.c_str()) == 0) return true;
  ::unlink(temp.c_str());
  return false;
}

}  // namespace

bool ThumbnailMaker::make(const fs::path& source, FileKind kind, const fs::path& destination) {
  if (kind != FileKind::image && kind != FileKind::video && kind != FileKind::pdf) return false;
  MediaLibs::init();

  auto deadlineAt = Clock::now() + kTimeLimit;
  auto job = std::make_shared<Job>();
  auto work = [job, source, kind, deadlineAt] {
    ffmpeg::Deadline deadline{deadlineAt, &job->cancelled};
    std::optional<std::string> jpeg = render(source, kind, deadline);
    {
      std::lock_guard lock(job->mutex);
      job->jpeg = std::move(jpeg);
      job->finished = true;
    }
    job->done.notify_all();
  };
  try {
    std::thread([work] {
      work();
      vips_thread_shutdown();  // Frees libvips' per-thread buffers of this short-lived thread.
    }).detach();
  } catch (const std::system_error&) {
    work();  // No thread to be had: render here, without the time limit.
  }

  std::optional<std::string> jpeg;
  {
    std::unique_lock lock(job->mutex);
    if (!job->done.wait_until(lock, deadlineAt, [&] { return job->finished; })) {
      job->cancelled = true;
      return false;
    }
    jpeg = std::move(job->jpeg);
  }
  return jpeg && writeAtomically(*jpeg, destination);
}

}  // namespace orrelin
