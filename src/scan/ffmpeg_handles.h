// Owning handles of FFmpeg objects, and opening a media file with a deadline.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace orrelin::ffmpeg {

struct InputCloser {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct CodecFree {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FrameFree {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct PacketFree {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

using Input = std::unique_ptr<AVFormatContext, InputCloser>;
using Codec = std::unique_ptr<AVCodecContext, CodecFree>;
using Frame = std::unique_ptr<AVFrame, FrameFree>;
using Packet = std::unique_ptr<AVPacket, PacketFree>;

// When to give up, and whether someone else has asked us to. FFmpeg polls it through its interrupt
// callback, so a read that stalls on a slow or hung drive is abandoned.
struct Deadline {
  std::chrono::steady_clock::time_point at = std::chrono::steady_clock::time_point::max();
  const std::atomic<bool>* cancelled = nullptr;

  bool passed() const {
    return (cancelled && cancelled->load(std::memory_order_relaxed)) ||
           std::chrono::steady_clock::now() >= at;
  }
};

// Opens `name` and reads its stream information. `deadline`, when given, must outlive the input.
// Returns nothing when FFmpeg cannot open or parse the file.
Input open(const std::string& name, const Deadline* deadline);

}  // namespace orrelin::ffmpeg
