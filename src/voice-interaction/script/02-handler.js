// The object that applications reach as corvis.voiceinteraction is one of these; its methods are on the
// prototype.
function VoiceInteractionHandler() {}
