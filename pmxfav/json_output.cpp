#include "json_output.h"

#include "terminal.h"

namespace pmx::tool {

Json StartJson(const FolderChoice& choice) {
    return {{"folder", Readable(choice.Folder)}, {"list", Readable(choice.ListFile)}};
}

void PrintJson(const Json& json) {
    Print(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

} // namespace pmx::tool
