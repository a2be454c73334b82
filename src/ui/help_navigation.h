#pragma once

#include <string>

namespace vantle {

// What the help window does with a link the reader follows. The help shows only our own pages;
// the web and mail belong to the desktop's browser and mail program, and nothing else is
// followed at all, so a page can never lead the reader somewhere unexpected.
enum class HelpLinkDecision {
    show,       // another page of the help folder, shown in the help window
    handOff,    // an https or mailto link, given to the desktop to open
    drop,       // anything else, plain http included: ignored without a word
};

// url: the link as resolved against the page it is on. helpFolder: the absolute path of the
// folder holding the help pages, without a trailing slash. Schemes are compared as written.
HelpLinkDecision decideHelpLink(const std::string& url, const std::string& helpFolder);

}  // namespace vantle
