// skyrama: the viewer's entry point. The framework drives the star scene.
int main() { return 0; }
