#include "platform/macos/DocumentationRules.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double kZoomStep = 1.1;
constexpr double kSmallest = 0.5;
constexpr double kLargest = 3;

constexpr std::array kKeys{
    std::pair{u'w', PageCommand::Close},        std::pair{u'c', PageCommand::Copy},
    std::pair{u'a', PageCommand::SelectAll},    std::pair{u'+', PageCommand::Enlarge},
    std::pair{u'=', PageCommand::Enlarge},      std::pair{u'-', PageCommand::Reduce},
    std::pair{u'0', PageCommand::OriginalSize},
};

} // namespace

bool staysInPage(const QString& address) {
    const QString page = u"about:blank"_s;
    return address == page || address.startsWith(page + u'#');
}

PageCommand pageCommandOf(const QString& characters) {
    const auto found = std::find_if(kKeys.begin(), kKeys.end(),
                                    [&characters](const auto& key) { return characters == QChar(key.first); });
    return found == kKeys.end() ? PageCommand::None : found->second;
}

double pageZoomAfter(PageCommand command, double zoom) {
    switch (command) {
    case PageCommand::Enlarge:
        return std::min(zoom * kZoomStep, kLargest);
    case PageCommand::Reduce:
        return std::max(zoom / kZoomStep, kSmallest);
    case PageCommand::OriginalSize:
        return 1;
    case PageCommand::None:
    case PageCommand::Close:
    case PageCommand::Copy:
    case PageCommand::SelectAll:
        break;
    }
    return zoom;
}

} // namespace quorvane
