// Shared by the context's sources: the state of the one instance.
#ifndef ZU_CONTEXT_INTERNAL_H
#define ZU_CONTEXT_INTERNAL_H

class ZuGlobalContext;

namespace zu_context {

// The context while it is built or alive (teardown included), else null: never builds
// one. Used by code that must not bring a context to life, such as a symbol's
// destructor running at exit after the teardown.
ZuGlobalContext* LiveInstance();

// True once a teardown has finished and no new context was built since.
bool IsTornDown();

} // namespace zu_context

#endif
