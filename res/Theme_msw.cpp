#include "res/Theme.h"

void PutOffTheme() {}
void RestoreThemeChoice() {}
void LoadTheme() {}
