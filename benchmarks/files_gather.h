#pragma once

/** The cases of gathering, which have peers with widgets. */
void registerGathering();
