#pragma once

namespace macsim {

struct ToolContext;

/// ditto SOURCE TARGET: copies a file, into TARGET where that is a folder, or merges a folder's contents into the folder
/// TARGET. Missing folders on the way are made. Links inside the source stay links; a link that is the source itself is
/// followed.
int runDitto(ToolContext& context);

} // namespace macsim
