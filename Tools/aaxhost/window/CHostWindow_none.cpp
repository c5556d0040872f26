#include "Tools/aaxhost/window/CHostWindow.h"

COutcome<std::unique_ptr<CHostWindow>> CHostWindow::Create(const std::string&)
{
    return SProblem{"A window to open the editor in is only available on Linux with X11."};
}
