// Which window has the focus in sway's tree.
#include <gmock/gmock.h>

#include "platform/wayland/SwayIpc.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SwayTree, TheFocusedWindowIsNamedByItsApplicationId) {
  EXPECT_THAT(focusedProgram(R"({"focused":false,"nodes":[{"focused":false,"app_id":"a"},
          {"focused":true,"app_id":"foot","window_properties":null}],"floating_nodes":[]})"),
              ElementsAre("foot"));
}

TEST(SwayTree, AWindowOnXwaylandIsNamedByItsClassAndInstance) {
  EXPECT_THAT(focusedProgram(R"({"nodes":[],"floating_nodes":[{"focused":true,"app_id":null,
          "window_properties":{"class":"XTerm","instance":"xterm"}}]})"),
              ElementsAre("XTerm", "xterm"));
}

TEST(SwayTree, WithoutAFocusedWindowThereIsNoName) {
  for (const auto* const tree : {"", "[]", "{}", R"({"focused":true,"type":"workspace"})",
                                 R"({"focused":1,"app_id":"a","nodes":{}})"}) {
    EXPECT_THAT(focusedProgram(tree), IsEmpty()) << tree;
  }
}

}  // namespace
}  // namespace seldial::platform::wayland
