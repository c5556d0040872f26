#pragma once
#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/window/CEditorView.h"

#include <memory>

/** What several checks do with an editor. */

/** Made before the instance: plug-ins that get no answer from a window system end the process. Ends the check
 * as unseen where there is no window to be had, as skipped where the plug-in has nothing to show in one. */
std::unique_ptr<CHostWindow> NeedWindow(CCheckContext& ioContext);
/** Ends the check as failed where the editor does not open. */
std::unique_ptr<CEditorView> OpenView(CInstance& ioInstance, CHostWindow& ioWindow);
/** Beats of its timer; ends the check as failed where one fails. */
void Tick(CEditorView& ioView, int inBeats);
/** Ticks until the editor says its size; ends the check where it never does. */
void NeedEditor(CEditorView& ioView);
