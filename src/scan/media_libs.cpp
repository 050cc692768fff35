// Quiet, initialised media libraries.
#include "scan/media_libs.h"

#include <vips/vips.h>

#include <poppler-global.h>
#include <exiv2/exiv2.hpp>
#include <mutex>

extern "C" {
#include <libavutil/log.h>
}

namespace orrelin::MediaLibs {

namespace {

void ignorePoppler(const std::string&, void*) {}

void ignoreGLog(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

}  // namespace

void init() {
  static std::once_flag once;
  std::call_once(once, [] {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    // exiv2's XMP parser must be set up once before it is used from more than one thread.
    Exiv2::XmpParser::initialize();
    av_log_set_level(AV_LOG_QUIET);
    poppler::set_debug_error_function(ignorePoppler, nullptr);
    vips_init("orrelin");
    // The operation cache keys loads by file name; thumbnails are made once per file and read through
    // /proc/self/fd names that are reused, so a cache would only hand back stale images.
    vips_cache_set_max(0);
    g_log_set_handler("VIPS",
                      static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE |
                                                  G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG),
                      ignoreGLog, nullptr);
  });
}

}  // namespace orrelin::MediaLibs
