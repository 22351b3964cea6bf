#include "addin/excel_call.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "addin/commands.h"
#include "addin/registration_table.h"

namespace kestran {
namespace {

// The add-in and the stand-in share them, so that only Excel itself would notice another number.
TEST(ExcelApi, NumbersAreThoseOfExcel) {
  const std::pair<int, int> numbers[] = {
      {xlfSetName, 88},    {xlfRegister, 149},       {xlfAddMenu, 152},    {xlfDeleteMenu, 158},
      {xlfGetBar, 182},    {xlfUnregister, 201},     {xlfRegisterId, 267}, {xlFree, 0x4000},
      {xlAbort, 0x4001},   {xlCoerce, 0x4002},       {xlSheetId, 0x4004},  {xlGetName, 0x4009},
      {xlcAlert, 0x8076},  {xltypeNum, 1},           {xltypeStr, 2},       {xltypeBool, 4},
      {xltypeRef, 8},      {xltypeErr, 16},          {xltypeMulti, 64},    {xltypeMissing, 128},
      {xltypeNil, 256},    {xltypeSRef, 1024},       {xltypeInt, 2048},    {xlbitDLLFree, 0x4000},
      {xlerrNull, 0},      {xlerrDiv0, 7},           {xlerrValue, 15},     {xlerrRef, 23},
      {xlerrName, 29},     {xlerrNum, 36},           {xlerrNA, 42},        {xlretSuccess, 0},
      {xlretInvXlfn, 2},   {xlretInvCount, 4},       {xlretInvXloper, 8},  {xlretFailed, 32},
      {xlretUncalced, 64}, {xlretNotThreadSafe, 128}};
  for (const auto& [ours, excels] : numbers) EXPECT_EQ(ours, excels);
}

TEST(TemporaryPool, HoldsSixtyFourRecords) {
  FreeAllTempMemory();
  XLOPER* first = TempNum(1.0);
  for (int i = 1; i < temporary_records; ++i) ASSERT_NE(TempInt(static_cast<short>(i)), nullptr) << i;
  EXPECT_EQ(TempMissing(), nullptr);
  EXPECT_EQ(GetTempMemory(1), nullptr);
  char text[] = " x";
  EXPECT_EQ(TempStr(text), nullptr);
  EXPECT_EQ(TempActiveCell(0, 0), nullptr);
  EXPECT_EQ(first->value.number, 1.0);
  call_excel(12345, nullptr, 0, nullptr);  // any call empties the pool, also one that Excel refuses
  EXPECT_EQ(TempNum(2.0), first);
  FreeAllTempMemory();
}

TEST(TemporaryPool, KeepsEveryRecordAligned) {
  FreeAllTempMemory();
  auto* start = static_cast<char*>(GetTempMemory(15));
  EXPECT_EQ(static_cast<char*>(GetTempMemory(1)), start + 16);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(TempNum(1.0)) % alignof(XLOPER), 0u);
  EXPECT_EQ(GetTempMemory(-1), nullptr);
  EXPECT_EQ(GetTempMemory(1 << 30), nullptr);
  FreeAllTempMemory();
}

TEST(TemporaryPool, BuildsEveryKindOfOperand) {
  FreeAllTempMemory();
  EXPECT_EQ(TempBool(7)->value.boolean, 1);
  EXPECT_EQ(TempBool(0)->type, xltypeBool);
  EXPECT_EQ(TempErr(42)->value.error, 42);
  char text[] = "?four";
  EXPECT_EQ(TempStr(text)->value.text, text);
  EXPECT_EQ(text[0], 4);
  char longer[302];
  std::memset(longer, 'a', 301);
  longer[301] = '\0';
  TempStr(longer);
  EXPECT_EQ(static_cast<unsigned char>(longer[0]), 300 & 255);  // the low eight bits only
  const XLOPER* column = TempActiveColumn(3);
  ASSERT_NE(column, nullptr);
  EXPECT_EQ(column->type, xltypeRef);
  const AreaList& areas = *column->value.reference.areas;
  EXPECT_EQ(areas.count, 1);
  EXPECT_EQ(areas.area.last_row, 16383);
  EXPECT_EQ(areas.area.first_column, 3);
  EXPECT_EQ(TempActiveRow(9)->value.reference.areas->area.last_column, 255);
  FreeAllTempMemory();
}

TEST(Tables, ToolsAreCountedTexts) {
  const char* const expected[tool_rows][tool_columns] = {
      {"\003211", "\014KESTRAN_Help", "\005FALSE", "\004TRUE", "\001 ", "\014KESTRAN Help", "\001 ", "\001 "},
      {"\0010", "\001 ", "\001 ", "\001 ", "\001 ", "\001 ", "\001 ", "\001 "},
      {"\003212", "\014KESTRAN_Exit", "\005FALSE", "\004TRUE", "\001 ", "\020Exit KESTRAN.XLL", "\001 ",
       "\001 "}};
  prepare_tables();
  for (int row = 0; row < tool_rows; ++row)
    for (int column = 0; column < tool_columns; ++column)
      EXPECT_STREQ(tool_table[row][column], expected[row][column]);
}

TEST(HelpPath, ReplacesTheFileNameBehindTheFolder) {
  char path[help_path_size];
#if defined(_WIN32)
  write_help_path("C:\\Addins\\kestran.xll", path);
  EXPECT_STREQ(path, "C:\\Addins\\Kestran.hlp");
  write_help_path("C:kestran.xll", path);
  EXPECT_STREQ(path, "C:Kestran.hlp");
  const char separator = '\\';
#else
  write_help_path("/opt/addins/libkestran.so", path);
  EXPECT_STREQ(path, "/opt/addins/Kestran.hlp");
  const char separator = '/';
#endif
  // Folders around the longest that leave room for the file name.
  for (int folder : {200, 243, 244, 245, 254}) {
    std::string module(static_cast<std::size_t>(folder), 'd');
    module += separator;
    write_help_path(module.c_str(), path);
    EXPECT_EQ(std::string(path), folder <= 244 ? module + "Kestran.hlp" : module.substr(0, 245)) << folder;
  }
}

}  // namespace
}  // namespace kestran
