// A video's thumbnail: one decoded frame from about a tenth of its length, scaled to fit 320 pixels with
// its pixel aspect ratio honoured, and turned upright as the file's display matrix says.
#include <algorithm>
#include <cmath>
#include <vector>

#include "scan/thumbnail_render.h"

extern "C" {
#include <libavutil/display.h>
#include <libswscale/swscale.h>
}

namespace orrelin::thumbs {

namespace {

struct SwsFree {
  void operator()(SwsContext* context) const { sws_freeContext(context); }
};

// Reads packets of `stream` and returns the first frame the decoder gives, or nothing at the end of the
// file, on a decoding error or when the deadline passes.
ffmpeg::Frame firstFrame(AVFormatContext* input, int stream, AVCodecContext* codec,
                         const ffmpeg::Deadline& deadline) {
  ffmpeg::Packet packet(av_packet_alloc());
  ffmpeg::Frame frame(av_frame_alloc());
  if (!packet || !frame) return nullptr;
  bool draining = false;
  while (!deadline.passed()) {
    int status = avcodec_receive_frame(codec, frame.get());
    if (status == 0) return frame;
    if (status != AVERROR(EAGAIN) || draining) return nullptr;
    if (av_read_frame(input, packet.get()) < 0) {
      // End of file: ask the decoder for what it still holds.
      draining = true;
      avcodec_send_packet(codec, nullptr);
      continue;
    }
    if (packet->stream_index == stream) {
      int sent = avcodec_send_packet(codec, packet.get());
      // A damaged packet is skipped; the next key frame may decode.
      (void)sent;
    }
    av_packet_unref(packet.get());
  }
  return nullptr;
}

// Clockwise degrees (0, 90, 180 or 270) that turn the stored picture upright, and whether the matrix
// also mirrors it, as FFmpeg's own player reads a display matrix.
Image applyDisplayMatrix(Image image, const AVStream& stream) {
  const int32_t* matrix =
      reinterpret_cast<const int32_t*>(av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
  if (!matrix) return image;
  double theta = -std::round(av_display_rotation_get(matrix));
  theta -= 360 * std::floor(theta / 360 + 0.9 / 360);

  auto apply = [&](auto operation) -> bool {
    VipsImage* out = nullptr;
    if (operation(image.get(), &out) != 0) {
      vips_error_clear();
      return false;
    }
    image.reset(out);
    return true;
  };
  auto rotate = [&](VipsAngle angle) {
    return apply([angle](VipsImage* in, VipsImage** out) { return vips_rot(in, out, angle, nullptr); });
  };
  auto flip = [&](VipsDirection direction) {
    return apply(
        [direction](VipsImage* in, VipsImage** out) { return vips_flip(in, out, direction, nullptr); });
  };

  bool ok = true;
  if (std::abs(theta - 90) < 1.0) {
    ok = rotate(VIPS_ANGLE_D90) && (matrix[3] <= 0 || flip(VIPS_DIRECTION_HORIZONTAL));
  } else if (std::abs(theta - 180) < 1.0) {
    ok = (matrix[0] >= 0 || flip(VIPS_DIRECTION_HORIZONTAL)) &&
         (matrix[4] >= 0 || flip(VIPS_DIRECTION_VERTICAL));
  } else if (std::abs(theta - 270) < 1.0) {
    ok = rotate(VIPS_ANGLE_D270) && (matrix[3] >= 0 || flip(VIPS_DIRECTION_HORIZONTAL));
  }
  return ok ? std::move(image) : nullptr;
}

// The frame scaled to fit 320 × 320 as packed RGB, its display aspect ratio kept.
Image scaledRgb(const AVFrame& frame) {
  double displayWidth = frame.width;
  if (frame.sample_aspect_ratio.num > 0 && frame.sample_aspect_ratio.den > 0) {
    displayWidth *= av_q2d(frame.sample_aspect_ratio);
  }
  double scale = std::min(1.0, kMaxPixel / std::max(displayWidth, static_cast<double>(frame.height)));
  int width = std::clamp(static_cast<int>(std::lround(displayWidth * scale)), 1, kMaxPixel);
  int height = std::clamp(static_cast<int>(std::lround(frame.height * scale)), 1, kMaxPixel);

  std::unique_ptr<SwsContext, SwsFree> sws(
      sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), width, height,
                     AV_PIX_FMT_RGB24, SWS_AREA, nullptr, nullptr, nullptr));
  if (!sws) return nullptr;
  std::vector<unsigned char> pixels(static_cast<size_t>(width) * height * 3);
  uint8_t* planes[4] = {pixels.data(), nullptr, nullptr, nullptr};
  int strides[4] = {width * 3, 0, 0, 0};
  if (sws_scale(sws.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) != height)
    return nullptr;
  return fromRgb(pixels.data(), width, height);
}

}  // namespace

std::optional<std::string> fromVideo(const std::string& name, const ffmpeg::Deadline& deadline) {
  ffmpeg::Input input = ffmpeg::open(name, &deadline);
  if (!input) return std::nullopt;
  const AVCodec* decoder = nullptr;
  int index = av_find_best_stream(input.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &decoder, 0);
  if (index < 0 || !decoder) return std::nullopt;
  const AVStream& stream = *input->streams[index];

  ffmpeg::Codec codec(avcodec_alloc_context3(decoder));
  if (!codec || avcodec_parameters_to_context(codec.get(), stream.codecpar) < 0) return std::nullopt;
  // Slice threads only: frame threads would hold back the first frame until every thread has one.
  codec->thread_type = FF_THREAD_SLICE;
  codec->thread_count = 0;
  if (avcodec_open2(codec.get(), decoder, nullptr) < 0) return std::nullopt;

  ffmpeg::Frame frame;
  bool still = stream.disposition & AV_DISPOSITION_ATTACHED_PIC;
  if (!still && input->duration != AV_NOPTS_VALUE && input->duration > 0) {
    // The key frame at or before a tenth of the length: opening titles and fades are mostly past by then,
    // and decoding starts right at the key frame.
    int64_t target = input->start_time != AV_NOPTS_VALUE ? input->start_time : 0;
    target += input->duration / 10;
    if (av_seek_frame(input.get(), -1, target, AVSEEK_FLAG_BACKWARD) >= 0) {
      avcodec_flush_buffers(codec.get());
      frame = firstFrame(input.get(), index, codec.get(), deadline);
    }
    if (!frame && !deadline.passed()) {
      av_seek_frame(input.get(), -1, input->start_time != AV_NOPTS_VALUE ? input->start_time : 0,
                    AVSEEK_FLAG_BACKWARD);
      avcodec_flush_buffers(codec.get());
    }
  }
  if (!frame) frame = firstFrame(input.get(), index, codec.get(), deadline);
  if (!frame || deadline.passed()) return std::nullopt;

  Image image = scaledRgb(*frame);
  if (!image) return std::nullopt;
  image = applyDisplayMatrix(std::move(image), stream);
  if (!image) return std::nullopt;
  return encodeJpeg(image.get());
}

}  // namespace orrelin::thumbs
