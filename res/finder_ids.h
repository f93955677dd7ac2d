#pragma once

// Controls of the receiver search, read by the resource compiler and by C++.
#define DIALOG_FINDER 610
#define FINDER_HEADLINE 611
#define FINDER_LIST 612
#define FINDER_PROGRESS 613
#define FINDER_AGAIN 614
#define FINDER_AT_START 615
