// What starting and ending any process costs: the floor for a run on a small variant.
int main() {}
