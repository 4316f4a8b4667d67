// Nodes and their lists.
#include <gtest/gtest.h>

#include "host.h"

TEST(Tree, InstancesCountNamesakesOfAnyCase) {
  CzonTargetList root;
  auto* first = new CzonSection("Grid", 0, 0);
  root.AddSection(first);
  root.AddSection(new CzonSection("Other", 0, 0));
  root.AddSection(new CzonSection("GRID", 0, 0));
  EXPECT_EQ(host::Show(&root), "{Grid{} Other{} GRID<2>{}}");
  EXPECT_EQ(root.SectionByNameNum("grid", 2)->GetName(), "GRID");
  EXPECT_EQ(first->GetNoInstances(), 2U);
}
