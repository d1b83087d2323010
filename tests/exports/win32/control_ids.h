#pragma once

// The numbers of the controls in the library's dialogs, which whoever automates them from outside goes by.
namespace pmx::exports_test {

inline constexpr int OkButton = 1;
inline constexpr int CancelButton = 2;

inline constexpr int EditorList = 3034;
inline constexpr int EditorEditButton = 3022;
inline constexpr int EditorCopyButton = 3026;
inline constexpr int EditorDeleteButton = 3023;
inline constexpr int EditorDownButton = 3017;
inline constexpr int EditorUpButton = 3016;
inline constexpr int EditorExportButton = 3020;
inline constexpr int EditorImportButton = 3018;

inline constexpr int BasicList = 3037;
inline constexpr int BasicDeleteButton = 3027;
inline constexpr int BasicDownButton = 3048;
inline constexpr int BasicUpButton = 3047;

inline constexpr int ChangeIconButton = 3025; // in both

inline constexpr int CreateNameBox = 3044;
inline constexpr int FirstLevelButton = 3028;
inline constexpr int ThirdLevelButton = 3030;

inline constexpr int RegisterNameBox = 3046;

} // namespace pmx::exports_test
