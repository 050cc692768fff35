// Making media fixtures with the real tools (ffmpeg, exiftool, ImageMagick) at test time, and reading
// back facts about files those tools write.
#pragma once

#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace orrelin::testing {

// Quotes `text` for the shell.
inline std::string shellQuote(const std::string& text) {
  std::string quoted = "'";
  for (char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

// Runs `command` in the shell with its output discarded; true when it exits with 0.
inline bool run(const std::string& command) {
  int status = ::system((command + " >/dev/null 2>&1").c_str());
  return status != -1 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Runs `command` and returns what it wrote to standard output, trailing newlines removed.
inline std::string output(const std::string& command) {
  std::string text;
  FILE* pipe = ::popen((command + " 2>/dev/null").c_str(), "r");
  if (!pipe) return text;
  std::array<char, 4096> buffer;
  size_t n;
  while ((n = ::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) text.append(buffer.data(), n);
  ::pclose(pipe);
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

inline bool haveTool(const std::string& name) { return run("command -v " + shellQuote(name)); }

// Skips the current test when one of the tools is not installed.
#define REQUIRE_TOOLS(...)                                                                \
  for (const char* tool : {__VA_ARGS__}) {                                                \
    if (!::orrelin::testing::haveTool(tool)) GTEST_SKIP() << tool << " is not installed"; \
  }

// Runs ffmpeg quietly with `arguments`, overwriting its output; true on success.
inline bool ffmpeg(const std::string& arguments) {
  return run("ffmpeg -nostdin -hide_banner -loglevel error -y " + arguments);
}

// Copies the video `from` to `to` with its display matrix set to turn the picture by `degrees`, as
// ffmpeg's "rotate" tag means it (only a stream copy keeps the tag as a matrix).
inline bool remuxRotated(const std::string& from, const std::string& to, int degrees) {
  return ffmpeg("-i " + shellQuote(from) + " -map 0 -c copy -metadata:s:v rotate=" + std::to_string(degrees) +
                " " + shellQuote(to));
}

// Sets tags with exiftool in place ("-Make=Canon" ...); true on success.
inline bool exiftool(const std::string& path, const std::string& arguments) {
  return run("exiftool -q -q -overwrite_original " + arguments + " " + shellQuote(path));
}

// The width and height of an image as ImageMagick reads it, as "W H".
inline std::string imageSize(const std::string& path) {
  return output("convert " + shellQuote(path) + " -format '%w %h' info:");
}

// The colour of one pixel as "r g b", each 0-255, as ImageMagick decodes the file.
inline std::array<int, 3> pixel(const std::string& path, int x, int y) {
  std::string text = output("convert " + shellQuote(path) + " -colorspace sRGB -format '%[fx:int(255*p{" +
                            std::to_string(x) + "," + std::to_string(y) + "}.r+0.5)] %[fx:int(255*p{" +
                            std::to_string(x) + "," + std::to_string(y) + "}.g+0.5)] %[fx:int(255*p{" +
                            std::to_string(x) + "," + std::to_string(y) + "}.b+0.5)]' info:");
  std::array<int, 3> rgb = {-1, -1, -1};
  ::sscanf(text.c_str(), "%d %d %d", &rgb[0], &rgb[1], &rgb[2]);
  return rgb;
}

// True when `rgb` is clearly the named primary (JPEG leaves some slack around pure colours).
inline bool isRed(const std::array<int, 3>& rgb) { return rgb[0] > 180 && rgb[1] < 80 && rgb[2] < 80; }
inline bool isBlue(const std::array<int, 3>& rgb) { return rgb[2] > 180 && rgb[0] < 80 && rgb[1] < 80; }
inline bool isWhite(const std::array<int, 3>& rgb) { return rgb[0] > 225 && rgb[1] > 225 && rgb[2] > 225; }

// A PDF written by hand: one page per media box (width, height in points), an info dictionary with
// `title` and `author`, and, when `redTopHalf`, the upper half of every page painted red.
inline std::string makePdf(const std::vector<std::pair<double, double>>& pages, const std::string& title,
                           const std::string& author, bool redTopHalf = false) {
  std::vector<std::string> objects;  // Object n is objects[n - 1].
  std::string kids;
  for (size_t i = 0; i < pages.size(); ++i) kids += std::to_string(4 + 2 * i) + " 0 R ";
  objects.push_back("<< /Type /Catalog /Pages 2 0 R >>");
  objects.push_back("<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages.size()) + " >>");
  objects.push_back("<< /Title (" + title + ") /Author (" + author + ") /Producer (orrelin tests) >>");
  for (size_t i = 0; i < pages.size(); ++i) {
    char box[128];
    std::snprintf(box, sizeof box, "[0 0 %g %g]", pages[i].first, pages[i].second);
    objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox " + std::string(box) + " /Contents " +
                      std::to_string(5 + 2 * i) + " 0 R >>");
    std::string content;
    if (redTopHalf) {
      char paint[128];
      std::snprintf(paint, sizeof paint, "1 0 0 rg 0 %g %g %g re f\n", pages[i].second / 2, pages[i].first,
                    pages[i].second / 2);
      content = paint;
    }
    objects.push_back("<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content +
                      "\nendstream");
  }

  std::string pdf = "%PDF-1.4\n";
  std::vector<size_t> offsets;
  for (size_t i = 0; i < objects.size(); ++i) {
    offsets.push_back(pdf.size());
    pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  size_t xref = pdf.size();
  pdf += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
  for (size_t offset : offsets) {
    char entry[32];
    std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", offset);
    pdf += entry;
  }
  pdf += "trailer\n<< /Size " + std::to_string(objects.size() + 1) +
         " /Root 1 0 R /Info 3 0 R >>\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n";
  return pdf;
}

}  // namespace orrelin::testing
