#pragma once

// Where the program lives on the Web.
inline constexpr const wchar_t* kHomepage = L"https://kivora.example/";
