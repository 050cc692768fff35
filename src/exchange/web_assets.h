// The inventory web site's script and stylesheet, compiled into the program from src/exchange/web/.
#pragma once

#include <string_view>

namespace orrelin::embedded {

// The text of src/exchange/web/app.js and src/exchange/web/style.css.
std::string_view app_js();
std::string_view style_css();

}  // namespace orrelin::embedded
