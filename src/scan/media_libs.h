// One-time set-up of the media libraries: their log output silenced, their global state initialised.
#pragma once

namespace orrelin::MediaLibs {

// Silences exiv2, FFmpeg, poppler and libvips (the program writes no log, and a scan must not spill
// library chatter onto a terminal) and initialises libvips. Safe to call from any thread, any number of
// times; only the first call does the work.
void init();

}  // namespace orrelin::MediaLibs
