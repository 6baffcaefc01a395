#include "platform/registry_store.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

using namespace std::string_literals;

std::int32_t Copy(std::size_t name_length, std::size_t data_length) {
  ValueBuffer buffer(255);
  return CopyValue({std::string(name_length, 'n'), std::string(data_length, 'd')}, buffer);
}

TEST(CopyValue, HoldsANameOf254CharactersAndItsTerminator) {
  EXPECT_EQ(Copy(254, 1), registry_result::Success);
  EXPECT_EQ(Copy(255, 1), registry_result::MoreData);
}

TEST(CopyValue, HoldsATextOf254CharactersAndItsTerminator) {
  EXPECT_EQ(Copy(1, 255), registry_result::Success);
  EXPECT_EQ(Copy(1, 256), registry_result::MoreData);
}

TEST(CopyValue, FillsTheFrontOfBothBuffers) {
  ValueBuffer buffer(6);
  EXPECT_EQ(CopyValue({"abc", "1234\0"s}, buffer), registry_result::Success);
  EXPECT_EQ(buffer.Name, "abc\0  "s);
  EXPECT_EQ(buffer.NameLength, 3U);
  EXPECT_EQ(buffer.Data, "1234\0 "s);
  EXPECT_EQ(buffer.DataLength, 5U);
}

TEST(CopyValue, LeavesTheBuffersAloneWhenItFails) {
  ValueBuffer buffer(3);
  EXPECT_EQ(CopyValue({"a", "1234"}, buffer), registry_result::MoreData);
  EXPECT_EQ(buffer.Name, "   ");
  EXPECT_EQ(buffer.Data, "   ");
  EXPECT_EQ(buffer.NameLength, 3U);
  EXPECT_EQ(buffer.DataLength, 3U);
}

TEST(RegistryRootName, NamesEveryTreeButNone) {
  EXPECT_EQ(RegistryRootName(RegistryRoot::ClassesRoot), "HKEY_CLASSES_ROOT");
  EXPECT_EQ(RegistryRootName(RegistryRoot::LocalMachine), "HKEY_LOCAL_MACHINE");
  EXPECT_EQ(RegistryRootName(RegistryRoot::None), "");
}

}  // namespace
}  // namespace cvl
