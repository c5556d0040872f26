#pragma once

/** A native view of the kind that frames are made in here; it lasts until the process ends. */
void* ParentView();
