#include "quillet/quillet.h"

void* GetInfiniteWaitEvent() {
    return nullptr;
}
