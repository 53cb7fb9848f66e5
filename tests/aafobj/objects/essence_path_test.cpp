#include "aafobj/objects/essence_path.h"

#include <gtest/gtest.h>

namespace aafobj {
namespace {

TEST(EssencePath, OfUrls) {
  EXPECT_EQ(path_of_locator(L"file:///a/b%20c.wav", "/x"), "/a/b c.wav");
  EXPECT_EQ(path_of_locator(L"FILE://localhost/a/%c3%a9.wav", "/x"), "/a/\xc3\xa9.wav");
  EXPECT_EQ(path_of_locator(L"file:///a/100%.wav", "/x"), "/a/100%.wav");
  EXPECT_EQ(path_of_locator(L"file:///a/%zz%4", "/x"), "/a/%zz%4");
}

TEST(EssencePath, OfPlainPaths) {
  EXPECT_EQ(path_of_locator(L"/a/b%20c.wav", "/x"), "/a/b%20c.wav");
  EXPECT_EQ(path_of_locator(L"take \u00e9.wav", "/x/y"), "/x/y/take \xc3\xa9.wav");
  EXPECT_EQ(path_of_locator(L"sub/a.wav", "/x"), "/x/sub/a.wav");
}

}  // namespace
}  // namespace aafobj
