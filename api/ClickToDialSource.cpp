#include "api/ClickToDialSource.h"

namespace seldial {

const char* rawValue(ClickToDialSource source) {
  switch (source) {
    case ClickToDialSource::CommandLine:
      return "CommandLine";
    case ClickToDialSource::Pasteboard:
      return "Pasteboard";
    case ClickToDialSource::StdIO:
      return "StdIO";
  }
  return "";
}

std::optional<ClickToDialSource> clickToDialSource(const std::string& rawValue) {
  for (const auto source :
       {ClickToDialSource::CommandLine, ClickToDialSource::Pasteboard, ClickToDialSource::StdIO}) {
    if (rawValue == seldial::rawValue(source)) return source;
  }
  return {};
}

}  // namespace seldial
