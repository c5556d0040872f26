namespace VSTGUI
{
/** VSTGUI's X11 side looks for pictures beside this module; null: for none. Its bindings for plug-ins define
 * it otherwise. */
extern void* soHandle;
void* soHandle = nullptr;
} // namespace VSTGUI
