// What the script takes from its runtime: the utilities, and the channel to the page's native instance. The
// runtime wraps the joined source in a scope of its own that supplies `extension` and `exports`.
var utils_ = xwalk.utils;
var type_ = utils_.type;
var converter_ = utils_.converter;
var validator_ = utils_.validator;
var types_ = validator_.Types;

var native_ = new xwalk.utils.NativeManager(extension);
