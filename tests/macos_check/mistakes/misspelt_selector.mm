// Must be refused: the message names a method that the class does not declare.
__attribute__((objc_root_class))
@interface Probe
+ (instancetype)probe;
- (void)measureLevel;
@end

void measure() {
    [[Probe probe] measureLevle];
}
