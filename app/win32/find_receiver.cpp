#include "app/win32/find_receiver.h"

#include "app/session/receiver_search.h"
#include "app/win32/finder_dialog.h"

namespace vgps {

void findReceiver(AppState& app, HINSTANCE resources, HWND owner, const FinderSetup& setup) {
  beginReceiverSearch(app);
  const auto chosen = runFinder(resources, owner, setup);
  if (!IsWindow(owner)) return;  // the program was closed during the search
  endReceiverSearch(app, chosen);
}

}  // namespace vgps
