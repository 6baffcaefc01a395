#include "controls/tree_view.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

TEST(TreeView, KeepsItsNodesInTheOrderInWhichTheyWereAdded) {
  TreeView tree;
  tree.Add("Server", 0, 3);
  tree.Add("Time", 1, 4);
  ASSERT_EQ(tree.Nodes.size(), 2U);
  EXPECT_EQ(tree.Nodes[0].Text, "Server");
  EXPECT_EQ(tree.Nodes[0].Parent, 0);
  EXPECT_EQ(tree.Nodes[0].Image, 3);
  EXPECT_EQ(tree.Nodes[1].Text, "Time");
  EXPECT_EQ(tree.Nodes[1].Parent, 1);
}

TEST(TreeView, HasNothingSelectedAndNothingOpenAtFirst) {
  TreeView tree;
  tree.Add("Server", 0, 3);
  EXPECT_EQ(tree.Selected, 0);
  EXPECT_FALSE(tree.Nodes[0].Expanded);
}

}  // namespace
}  // namespace cvl
