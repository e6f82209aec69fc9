#pragma once

#include <string>
#include <vector>

/// The files under "Data/" that the demo names itself, in the order in which it loads them, the
/// music last. What the meshes name in their turn is not listed.
const std::vector<std::string>& DemoFiles();

/// Puts a "Data" folder into the working directory: tiny files in the demo's formats (every one of
/// DemoFiles() but the music) or, when the environment variable NIMBREL_TEST_DATA names a folder, a
/// link to that one.
///
/// The tiny ones: meshes of one triangle without textures, a sky of one blue, a white logo of
/// 128 x 128 pixels. The city's shader reads all three lights.
void MakeDemoData();

/// Whether MakeDemoData() links to a real folder: pixels are then not known beforehand.
bool DemoDataIsReal();
