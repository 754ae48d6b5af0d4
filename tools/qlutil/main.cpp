#include "rw/date.h"

int main() {
    return static_cast<int>(RWDate().dayNumber() % 2);
}
