// What an audio or video file says about itself, read through FFmpeg: duration, each track's codec, size,
// frame rate, sample rate, channels and bit rates, and the common tags.
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string_view>

#include "scan/ffmpeg_handles.h"
#include "scan/media_libs.h"
#include "scan/metadata_extractor.h"
#include "scan/regular_file.h"
#include "store/fmt.h"
#include "store/safe_int.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

namespace orrelin {

namespace {

constexpr uint32_t code(const char (&text)[5]) {
  return static_cast<uint32_t>(static_cast<unsigned char>(text[0])) << 24 |
         static_cast<uint32_t>(static_cast<unsigned char>(text[1])) << 16 |
         static_cast<uint32_t>(static_cast<unsigned char>(text[2])) << 8 |
         static_cast<uint32_t>(static_cast<unsigned char>(text[3]));
}

bool isLinearPcm(AVCodecID id) {
  if (id < AV_CODEC_ID_PCM_S16LE || id >= AV_CODEC_ID_ADPCM_IMA_QT) return false;
  // Companded and oddball codecs share the PCM range but are not linear.
  return id != AV_CODEC_ID_PCM_MULAW && id != AV_CODEC_ID_PCM_ALAW && id != AV_CODEC_ID_PCM_VIDC &&
         id != AV_CODEC_ID_PCM_ZORK && id != AV_CODEC_ID_PCM_SGA;
}

// The four-character code under which QuickTime names FFmpeg's codec, for the codecs that have a
// display name of their own; nothing for the others.
std::optional<uint32_t> quickTimeCode(const AVCodecParameters& par) {
  switch (par.codec_id) {
    case AV_CODEC_ID_H264:
      return code("avc1");
    case AV_CODEC_ID_HEVC:
      return code("hvc1");
    case AV_CODEC_ID_MPEG4:
      return code("mp4v");
    case AV_CODEC_ID_MJPEG:
      return code("jpeg");
    case AV_CODEC_ID_AAC:
      return code("aac ");
    case AV_CODEC_ID_MP3:
      return code(".mp3");
    case AV_CODEC_ID_ALAC:
      return code("alac");
    case AV_CODEC_ID_FLAC:
      return code("flac");
    case AV_CODEC_ID_PRORES: {
      static constexpr std::array<uint32_t, 6> kProfiles = {code("apco"), code("apcs"), code("apcn"),
                                                            code("apch"), code("ap4h"), code("ap4x")};
      if (par.profile >= 0 && par.profile < static_cast<int>(kProfiles.size())) return kProfiles[par.profile];
      return std::nullopt;
    }
    default:
      if (isLinearPcm(par.codec_id)) return code("lpcm");
      return std::nullopt;
  }
}

// The display name of a track's codec. In QuickTime and MP4 files a video track's sample-entry code is
// what the format itself calls the codec, so it is shown through the code table; audio sample entries
// ("mp4a", "sowt", ...) are not codec names, so audio, like every track of other containers, goes by
// FFmpeg's codec id, and by the codec's own name when it has no display name.
std::string codecName(const AVCodecParameters& par, bool isQuickTime) {
  bool tagged = isQuickTime && par.codec_tag != 0;
  if (tagged && par.codec_type == AVMEDIA_TYPE_VIDEO)
    return MetadataExtractor::fourCC(__builtin_bswap32(par.codec_tag));
  if (auto known = quickTimeCode(par)) return MetadataExtractor::fourCC(*known);
  if (tagged) return MetadataExtractor::fourCC(__builtin_bswap32(par.codec_tag));
  const AVCodecDescriptor* descriptor = avcodec_descriptor_get(par.codec_id);
  return descriptor ? descriptor->name : "?";
}

std::string kbpsText(int64_t kbps) { return std::to_string(kbps) + " kbps"; }

void readVideo(const AVStream& stream, bool isQuickTime, MetadataExtractor::Output& out) {
  const AVCodecParameters& par = *stream.codecpar;
  int64_t w = std::llabs(static_cast<long long>(par.width));
  int64_t h = std::llabs(static_cast<long long>(par.height));
  out.width = w;
  out.height = h;
  if (w > 0) out.meta["Resolution"] = std::to_string(w) + " \u00d7 " + std::to_string(h);
  if (par.codec_id != AV_CODEC_ID_NONE) out.meta["Video Codec"] = codecName(par, isQuickTime);
  AVRational rate = stream.avg_frame_rate.num > 0 && stream.avg_frame_rate.den > 0 ? stream.avg_frame_rate
                                                                                   : stream.r_frame_rate;
  double fps = rate.den > 0 ? av_q2d(rate) : 0;
  if (fps > 0) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.3g fps", fps);
    out.meta["Frame Rate"] = buffer;
  }
  int64_t kbps = SafeInt::from(static_cast<double>(par.bit_rate) / 1000.0);
  if (kbps >= 1) out.meta["Video Bitrate"] = kbpsText(kbps);
}

void readAudio(const AVStream& stream, bool isQuickTime, double seconds, long long fileSize,
               MetadataExtractor::Output& out) {
  const AVCodecParameters& par = *stream.codecpar;
  if (par.codec_id != AV_CODEC_ID_NONE) {
    out.meta["Audio Codec"] = codecName(par, isQuickTime);
    if (par.sample_rate > 0) {
      char buffer[64];
      std::snprintf(buffer, sizeof buffer, "%.1f kHz", par.sample_rate / 1000.0);
      out.meta["Sample Rate"] = buffer;
    }
    int channels = par.ch_layout.nb_channels;
    if (channels != 0) {
      out.meta["Channels"] = channels == 1 ? "Mono" : channels == 2 ? "Stereo" : std::to_string(channels);
    }
  }
  int64_t kbps = SafeInt::from(static_cast<double>(par.bit_rate) / 1000.0);
  // Lossless and some VBR streams carry no rate of their own; the file's average is a fair stand-in.
  if (kbps <= 0 && seconds > 0 && fileSize >= 0) {
    kbps = SafeInt::from(static_cast<double>(fileSize) * 8.0 / seconds / 1000.0);
  }
  if (kbps >= 1) out.meta["Bitrate"] = kbpsText(kbps);
}

// The common tags: each label with FFmpeg's generic tag names for it, the preferred name first.
struct TagLabel {
  const char* label;
  std::array<const char*, 3> keys;
};
constexpr std::array<TagLabel, 6> kTagLabels = {{
    {"Title", {"title", nullptr, nullptr}},
    {"Artist", {"artist", nullptr, nullptr}},
    {"Album", {"album", nullptr, nullptr}},
    {"Creator", {"creator", "author", "composer"}},
    {"Genre", {"genre", nullptr, nullptr}},
    {"Copyright", {"copyright", nullptr, nullptr}},
}};

std::optional<std::string> tagValue(const AVDictionary* dict, const TagLabel& tag) {
  for (const char* key : tag.keys) {
    if (!key) break;
    const AVDictionaryEntry* entry = av_dict_get(dict, key, nullptr, 0);  // Case-insensitive.
    if (entry && entry->value && entry->value[0] != '\0') return std::string(entry->value);
  }
  return std::nullopt;
}

void readTags(const AVFormatContext& context, MetadataExtractor::Output& out) {
  for (const TagLabel& tag : kTagLabels) {
    std::optional<std::string> value = tagValue(context.metadata, tag);
    // Ogg and a few others keep their tags on the stream rather than the container.
    for (unsigned i = 0; !value && i < context.nb_streams; ++i)
      value = tagValue(context.streams[i]->metadata, tag);
    if (value) out.meta[tag.label] = *value;
  }
}

}  // namespace

MetadataExtractor::Output MetadataExtractor::av(const std::filesystem::path& path, bool /*isVideo*/) {
  MediaLibs::init();
  RegularFile file(path);
  if (!file.ok()) return {};
  ffmpeg::Input input = ffmpeg::open(file.reopenPath(), nullptr);
  if (!input) return {};

  Output out;
  double seconds =
      input->duration != AV_NOPTS_VALUE ? input->duration / static_cast<double>(AV_TIME_BASE) : 0;
  if (std::isfinite(seconds) && seconds > 0) {
    out.duration = seconds;
    out.meta["Duration"] = Fmt::duration(seconds);
  } else {
    seconds = 0;
  }

  bool isQuickTime = std::string_view(input->iformat->name).find("mov") != std::string_view::npos;
  for (unsigned i = 0; i < input->nb_streams; ++i) {
    const AVStream& stream = *input->streams[i];
    // Cover art shows up as a one-picture video stream; it is not a track of the recording.
    if (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) continue;
    if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO) {
      readVideo(stream, isQuickTime, out);
    } else if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
      readAudio(stream, isQuickTime, seconds, file.size(), out);
    }
  }
  readTags(*input, out);
  return out;
}

}  // namespace orrelin
