#include "Launcher/LoginHelper.h"

int main() { return LoginHelper().run(); }
