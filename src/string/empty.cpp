// The shared empty strings, one per mode.
#include <zu/string.h>

#include <cstdlib>
#include <new>

bool ZuEmptyInitialization::MonoFirst = true;
bool ZuEmptyInitialization::MultiFirst = true;

namespace {

// Each static lives in raw storage rather than as a function-local object so that a
// call made after its destruction at exit (from another exit-time destructor) builds
// it again instead of handing out a destroyed string.
struct EmptySlot {
    alignas(ZuString) unsigned char storage[sizeof(ZuString)];
    bool live;
};

EmptySlot monoSlot;
EmptySlot multiSlot;

ZuString* inSlot(EmptySlot& slot) { return reinterpret_cast<ZuString*>(slot.storage); }

void destroy(EmptySlot& slot) {
    if (!slot.live) return;
    slot.live = false;
    inSlot(slot)->~ZuString();
}

void destroyMono() { destroy(monoSlot); }
void destroyMulti() { destroy(multiSlot); }

} // namespace

ZuString* ZuEmptyInitialization::GetEmpty() {
    const bool multi = MB_CUR_MAX > 1;
    EmptySlot& slot = multi ? multiSlot : monoSlot;
    if (!slot.live) {
        // The first time the mode's flag is still true, so the ordinary constructor makes a
        // private empty representation for the static instead of asking for the static.
        bool& first = multi ? MultiFirst : MonoFirst;
        if (first)
            new (slot.storage) ZuString("");
        else if (multi)
            new (slot.storage) ZuString(static_cast<ZuInternalString*>(new ZuMBString("")));
        else
            new (slot.storage) ZuString(static_cast<ZuInternalString*>(new ZuSBString("")));
        slot.live = true;
        std::atexit(multi ? destroyMulti : destroyMono);
        first = false;
    }
    return inSlot(slot);
}
