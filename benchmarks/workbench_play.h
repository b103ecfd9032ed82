#pragma once

/** Playback of frames of several formats, beside ffmpeg that decodes the same files and shows
    nothing. */
void registerPlayBenchmarks();
