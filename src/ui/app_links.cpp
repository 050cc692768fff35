// The Help menu's links, handed on to HelpLinks.
#include "ui/app_links.h"

#include "app/qt/help_links.h"

namespace orrelin {

bool AppLinks::openHelp() const { return HelpLinks::openHelp(); }

bool AppLinks::openWebsite() const { return HelpLinks::openWebsite(); }

}  // namespace orrelin
