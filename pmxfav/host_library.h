#pragma once

namespace pmx::tool {

/// Whether the host's document model, PmxDocMgr, is there, which lies beside the tool. Without it every document is
/// refused: the content of favorite files cannot be read or written.
bool HasHostLibrary();

} // namespace pmx::tool
