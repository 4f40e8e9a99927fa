#include <gtest/gtest.h>

#include "common/MutiLanSupport.h"
#include "toolkit/FileSys.h"

namespace {

const wchar_t* const kIds[] = {
    L"STRID_EIM_NAME",
    L"STRID_EIM_MAIN",
    L"STRID_MIVO_INIT_GLOBAL_STRUCT_ERROR_CONTENT",
    L"STRID_MIVO_INIT_GLOBAL_STRUCT_ERROR_CAPTION",
    L"STRID_SELECTED_USER_FORM_TITLE",
    L"STRID_SELECTED_USER_FORM_LOGIN_USER_TIP",
    L"STRID_SELECTED_USER_FORM_REMEMBER_CHOICE_TIP",
    L"STRID_SELECTED_USER_FORM_SELECT_ONE_TIP",
    L"STRID_SELECTED_USER_FORM_OK",
    L"STRID_SELECTED_USER_FORM_CANCEL",
    L"STRID_SESSION_FOLDER_TITLE",
    L"STRID_SESSION_HOUR",
    L"STRID_SESSION_MINUTE",
    L"STRID_SESSION_SECOND",
};

class ShippedTable : public ::testing::TestWithParam<const char*> {};

// Every language the launcher ships answers every id it asks for, and the languages differ.
TEST_P(ShippedTable, HasEveryLauncherString) {
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  lang->ClearAll();
  std::string path = std::string(MIVO_RESOURCE_DIR) + "/lang/" + GetParam() + "/gdstrings.ini";
  ASSERT_EQ(lang->LoadStringTable(toolkit::sys::FromNativePath(path).c_str()), 1) << path;
  for (const wchar_t* id : kIds) EXPECT_FALSE(lang->GetStringViaID(id).IsEmpty()) << GetParam();
  CString tip = lang->GetStringViaID(L"STRID_SELECTED_USER_FORM_TITLE");
  lang->ClearAll();
  const std::string language = GetParam();
  const wchar_t* expected = language == "zh_CN"   ? L"\u9009\u62e9\u767b\u5f55\u7528\u6237"
                            : language == "zh_TW" ? L"\u9078\u64c7\u767b\u5165\u4f7f\u7528\u8005"
                                                  : L"Choose a user";
  EXPECT_EQ(tip, expected);
}

INSTANTIATE_TEST_SUITE_P(Languages, ShippedTable, ::testing::Values("zh_CN", "zh_TW", "en_US"));

}  // namespace
