// Opening media files through FFmpeg.
#include "scan/ffmpeg_handles.h"

#include <atomic>

namespace orrelin::ffmpeg {

namespace {

int interrupted(void* opaque) { return static_cast<const Deadline*>(opaque)->passed() ? 1 : 0; }

}  // namespace

Input open(const std::string& name, const Deadline* deadline) {
  AVFormatContext* context = avformat_alloc_context();
  if (!context) return nullptr;
  if (deadline) {
    context->interrupt_callback.callback = interrupted;
    context->interrupt_callback.opaque = const_cast<Deadline*>(deadline);
  }
  // On failure avformat_open_input frees the context itself.
  if (avformat_open_input(&context, name.c_str(), nullptr, nullptr) < 0) return nullptr;
  Input input(context);
  if (avformat_find_stream_info(context, nullptr) < 0) return nullptr;
  return input;
}

}  // namespace orrelin::ffmpeg
